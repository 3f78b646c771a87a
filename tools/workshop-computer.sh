#!/usr/bin/env bash
# Puts a disc into the drive of a workshop computer: workshop-computer.sh COMPUTER DISC. A computer that is missing becomes
# a copy of the sample computer, which is made anew when something that it is made from has changed. Drive D: is then the
# folder DISC, and a CD-ROM to the program.
set -euo pipefail
source "$(dirname "$0")/common.sh"
[ $# -eq 2 ] || die "say COMPUTER DISC"
computer=$1 disc=$(realpath "$2")
sample=$root/build/sample-computer
windows=$root/build/windows native=$root/build/native

make_sample() {
    local template inputs
    template=$("$root/tools/wine-prefix.sh" template)
    inputs=$template-$(find "$root/samples" -type f ! -path '*/__pycache__/*' -print0 | sort -z |
        xargs -0 sha256sum "$windows/samples/KVX3.exe" "$native/tools/mkcatalogue/mkcatalogue" | sha256sum | cut -c1-32)
    [ "$(cat "$sample/.made-from" 2>/dev/null)" != "$inputs" ] || return 0
    rm -rf "$sample" "$sample.new"
    "$root/tools/wine-prefix.sh" new "$sample.new"
    "$root/samples/make-computer.sh" "$sample.new" "$windows" "$native"
    # Its registry is complete on the disk only when its server has ended.
    end_wine "$sample.new"
    echo "$inputs" >"$sample.new/.made-from"
    mv "$sample.new" "$sample"
}

if [ ! -e "$computer/system.reg" ]; then
    mkdir -p "$root/build" "$computer"
    exec 8>"$sample.lock"
    flock 8
    make_sample 8>&-
    cp -a --reflink=auto "$sample/." "$computer/"
    exec 8>&-
fi
ln -sfn "$disc" "$computer/dosdevices/d:"
