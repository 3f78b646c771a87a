#!/usr/bin/env bash
# Ends the program in the middle of its work, over and over, and looks at what is left of the library and the catalogue:
#   tools/kill-test.sh [ROUNDS] [SEED]     50 rounds when not said; the same seed picks the same moments
# Each round has a computer of its own: a run is killed at a random time or soon after something has happened, what is
# left is checked (kill-test.py says how), and one more run must bring everything in order. One line a round; what a
# failed round has left is kept. MIP_BUILD=DIR tests the program that was built there and builds nothing; MIP_JOBS=N
# runs N rounds at a time, two when not said.
set -euo pipefail
source "$(dirname "$0")/common.sh"
rounds=${1:-50} seed=${2:-$(date +%s)}
[[ $rounds =~ ^[1-9][0-9]*$ && $seed =~ ^[0-9]+$ ]] || die "say [ROUNDS] [SEED], both numbers"
build=${MIP_BUILD:-$root/build}

# Each kind of manual once, so that a run is short: a later edition, an update, a differential update, a new manual with
# Japanese names, a PDF.
manuals='Talis2019_Workshop_EN Brescot2018_Workshop_EN Ondari2021_Workshop_EN フユネ2021_整備書 Diagnosis2023_PDF'

prepare() {
    local folder
    if [ -z "${MIP_BUILD:-}" ]; then
        "$root/tools/set-up.sh"
        "$root/tools/build.sh" native mkcatalogue mkdisc
        "$root/tools/build.sh" windows programs
    fi
    "$root/samples/make-disc.sh" "$work/disc" "$build/windows" "$build/native"
    for folder in "$work"/disc/*/car_info.ci; do
        folder=${folder%/*}
        [[ " $manuals " == *" ${folder##*/} "* ]] || rm -r "$folder"
    done
    "$root/tools/wine-prefix.sh" new "$work/prepared"
    "$root/samples/make-computer.sh" "$work/prepared" "$build/windows" "$build/native"
    ln -sfn "$work/disc" "$work/prepared/dosdevices/d:"
    python3 -B "$root/tools/kill-test.py" prepare "$work"
}

# on_computer NAME ARGUMENTS...: kill-test.py in a session on a fresh copy of the prepared computer.
on_computer() {
    local computer=$work/$1
    shift
    rm -rf "$computer"
    cp -a --reflink=auto "$work/prepared" "$computer"
    "$root/tools/wine-session.sh" --prefix "$computer" python3 -B "$root/tools/kill-test.py" "$@" </dev/null
}

# A run may end before its moment comes; then another moment is picked.
one_round() {
    local number=$1 attempt status
    for attempt in 1 2 3 4 5 6; do
        status=0
        on_computer "round-$number" round "$work" "$number" "$seed" "$attempt" || status=$?
        [ $status -eq 75 ] || break
    done
    [ $status -ne 130 ] || return 0  # interrupted
    if [ $status -eq 0 ]; then
        rm -rf "$work/round-$number" "$work/round-$number.lock"
    else
        [ $status -ne 75 ] || echo "round $number: every run ended before its moment"
        echo "round $number: kept in $work/round-$number"
    fi
    echo "$status" >"$work/status-$number"
}

# What has failed is kept, also when the rest is interrupted.
close_test() {
    local lock
    for lock in "$work"/*.lock; do
        flock -w 30 "$lock" true || true  # a session holds it until it has ended
    done
    cat "$work"/status-* 2>/dev/null | grep -qvx 0 || rm -rf "$work"
}

work=$(mktemp -d "${TMPDIR:-/tmp}/mip-kill.XXXXXX")
trap close_test EXIT
trap 'exit 130' INT TERM
prepare
say "A whole run, to compare with"
on_computer reference reference "$work" ||
    { echo 1 >"$work/status-reference"; die "the whole run is not in order; it is kept in $work/reference"; }
echo "seed $seed, $(cat "$work/reference.txt")"

export work root seed
export -f on_computer one_round
# shellcheck disable=SC2016  # the inner shell expands it
seq "$rounds" | xargs -P "${MIP_JOBS:-2}" -I{} bash -c 'set -uo pipefail; one_round "$1"' _ {}

repaired=$(cat "$work"/status-* | grep -cx 0 || true)
kills=$(find "$work" -maxdepth 1 -name 'killed-*' | wc -l)
echo "$kills kills, $repaired repaired"
[ "$repaired" -eq "$rounds" ] || { echo "What failed is kept in $work"; exit 1; }
