#!/usr/bin/env bash
# Runs one Windows program on a sample workshop computer of its own, with a copy of the sample disc in drive D:, and
# throws both away: computer-run.sh PROGRAM.EXE [ARGUMENTS...]. Disc and programs are those that were built.
# With MIP_SMALL_DRIVE=SIZE ("8m") the computer also has a drive E: of that size, which can be filled.
set -euo pipefail
source "$(dirname "$0")/common.sh"

# To list a test program's tests no computer is needed.
[[ " $* " != *" --gtest_list_tests "* ]] || exec "$root/tools/wine-run.sh" "$@"

work=$(mktemp -d "${TMPDIR:-/tmp}/mip-computer.XXXXXX")
trap 'rm -rf "$work"' EXIT
"$root/samples/make-disc.sh" "$root/build/disc" "$root/build/windows" "$root/build/native"
cp -a --reflink=auto "$root/build/disc" "$work/disc"
"$root/tools/workshop-computer.sh" "$work/computer" "$work/disc"
session=("$root/tools/wine-session.sh" --prefix "$work/computer" "$root/tools/wine-run.sh" "$@")
if [ -n "${MIP_SMALL_DRIVE:-}" ]; then
    mkdir "$work/small"
    ln -s "$work/small" "$work/computer/dosdevices/e:"
    # The mount is seen by this session alone and goes with its last process, whatever ends it.
    own_mounts=(unshare --mount)
    [ "$(id -u)" -eq 0 ] || own_mounts+=(--map-root-user)
    # shellcheck disable=SC2016  # the inner shell expands it
    "${own_mounts[@]}" sh -c 'mount -t tmpfs -o "size=$1" tmpfs "$2" && shift 2 && exec "$@"' sh \
        "$MIP_SMALL_DRIVE" "$work/small" "${session[@]}"
else
    "${session[@]}"
fi
