#!/usr/bin/env bash
# Runs one Windows program on a sample workshop computer of its own, with the sample disc in drive D:, and throws the
# computer away: workshop-run.sh PROGRAM.EXE [ARGUMENTS...]. Disc and programs are those that were built.
set -euo pipefail
source "$(dirname "$0")/common.sh"

# To list a test program's tests no computer is needed.
[[ " $* " != *" --gtest_list_tests "* ]] || exec "$root/tools/wine-run.sh" "$@"

work=$(mktemp -d "${TMPDIR:-/tmp}/mip-workshop.XXXXXX")
trap 'rm -rf "$work"' EXIT
"$root/samples/make-disc.sh" "$root/build/disc" "$root/build/windows" "$root/build/native"
"$root/tools/make-workplace.sh" "$work/computer" "$root/build/disc"
"$root/tools/wine-session.sh" --prefix "$work/computer" "$root/tools/wine-run.sh" "$@"
