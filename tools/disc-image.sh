#!/usr/bin/env bash
# Makes an image of a disc folder, to be burnt or mounted:  disc-image.sh OUT.iso DISC_DIR
# Joliet with long names, so that Windows shows every name as it is, Japanese ones too.
set -euo pipefail
source "$(dirname "$0")/common.sh"
[ $# -eq 2 ] || die "say OUT.iso DISC_DIR"
image=$1 disc=$2
[ -f "$disc/programs/setup/ManualInstall.exe" ] || die "$disc is no complete disc; make it with samples/make-disc.sh"
command -v xorriso >/dev/null || die "xorriso is not installed"

# Joliet cuts names after 103 characters without a word.
long=$(find "$disc" -printf '%f\n' | LC_ALL=C.UTF-8 awk 'length($0) > 103 { print; exit }')
[ -z "$long" ] || die "this name is too long for a disc: $long"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
run_logged "$log" xorriso -as mkisofs -quiet -J -joliet-long -R -V VANTOR_MANUALS -o "$image.new" "$disc"
mv "$image.new" "$image"
