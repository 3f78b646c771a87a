#!/usr/bin/env bash
# A workshop computer with a disc in its drive: make-workplace.sh PREFIX DISC. The prefix is made and filled when it is
# missing; one that was not finished is made again. Drive D: is then the folder DISC, and a CD-ROM to the program.
set -euo pipefail
source "$(dirname "$0")/common.sh"
[ $# -eq 2 ] || die "say PREFIX DISC"
prefix=$1 disc=$(realpath "$2")

if [ ! -e "$prefix/system.reg" ]; then
    unfinished=$prefix.unfinished
    rm -rf "$unfinished"
    "$root/tools/wine-prefix.sh" new "$unfinished"
    "$root/samples/make-computer.sh" "$unfinished" "$root/build/windows" "$root/build/native"
    mkdir -p "$(dirname "$prefix")"
    mv -T "$unfinished" "$prefix"
fi
ln -sfn "$disc" "$prefix/dosdevices/d:"
