#!/usr/bin/env bash
# Extraction and folder copy under Wine against "unzip -q" and "cp -r" of the same manual on the same disk:
#   extract-copy.sh [ROUNDS]
# Prints the best time of each, the ratios, the calls per file and the peak of memory above idle. Build the Windows tool
# first: tools/build.sh windows extract_copy
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
if [ -z "${MIP_WINE_SESSION:-}" ]; then
    exec "$root/tools/wine-session.sh" "$0" "$@"
fi
rounds=${1:-5}
tool=${MIP_BENCH_TOOL:-$root/build/windows/tests/windows/extract_copy.exe}
work=$(mktemp -d "$WINEPREFIX/drive_c/bench.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
python3 "$root/tests/bench/make_manual.py" manual

timed() {
    local start=$EPOCHREALTIME
    "$@"
    echo "$1 $(awk "BEGIN { print $EPOCHREALTIME - $start }")" >>results
}

# Every round has folders of its own, and nothing is removed before the end: ext4 takes its time over names and inodes that
# were in use a moment ago, and would charge that to whoever comes next.
for ((round = 0; round < rounds; ++round)); do
    mkdir "$round"
    sync; timed unzip -q manual.zip -d "$round/unzipped"
    sync; timed cp -r "$round/unzipped" "$round/copied"
    sync
    folder="C:\\${work##*/}\\$round"
    "$root/tools/wine-run.sh" "$tool" "C:\\${work##*/}\\manual.zip" "$folder\\ours" "$folder\\ours-copied" | tee -a ours.log
done
diff -r 0/unzipped 0/ours
diff -r 0/ours 0/ours-copied

best() { grep -oP "\b$1 \K[0-9.]+" "$2" | sort -n | head -n 1; }
unzip=$(best unzip results) cp=$(best cp results)
extract=$(best extract ours.log) copy=$(best copy ours.log)
awk "BEGIN {
    printf \"extraction %.2f s, unzip %.2f s: %.2f\n\", $extract, $unzip, $extract / $unzip
    printf \"copy %.2f s, cp %.2f s: %.2f\n\", $copy, $cp, $copy / $cp
}"
