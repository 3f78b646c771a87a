#!/usr/bin/env bash
# Extraction and folder copy under Wine against "unzip -q" and "cp -r" of the same manual on the same disk, and against the
# least that Wine takes to read and to write these files by its bare calls, on two threads:
#   extract-copy.sh [ROUNDS]
# Prints the rounds with their calls per file and peak of memory above idle in KiB, then the middle of the times and of the
# rounds' ratios. Build the Windows tools first: tools/build.sh windows extract_copy file_floor
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
if [ -z "${MIP_WINE_SESSION:-}" ]; then
    exec "$root/tools/wine-session.sh" "$0" "$@"
fi
rounds=${1:-5}
tools=$root/build/windows/tools/bench
tool=${MIP_BENCH_TOOL:-$tools/extract_copy.exe}
work=$(mktemp -d "$WINEPREFIX/drive_c/bench.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
python3 "$root/tools/bench/make_manual.py" manual

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
    sync
    "$root/tools/wine-run.sh" "$tools/file_floor.exe" "$folder\\ours" "$folder\\floor" 2 | tee -a floor.log
done
diff -r 0/unzipped 0/ours
diff -r 0/ours 0/ours-copied

# The middle of a column, or of its ratio to another, over the rounds.
middle() { sort -n | awk '{ value[NR] = $1 } END { printf "%.2f", value[int((NR + 1) / 2)] }'; }
column() { grep -hoP "\b$1 \K[0-9.]+" results ours.log floor.log; }
ratio() { paste <(column "$1") <(column "$2") | awk '{ print $1 / $2 }' | middle; }

echo "extraction $(column extract | middle) s, unzip $(column unzip | middle) s: $(ratio extract unzip)"
echo "copy $(column copy | middle) s, cp $(column cp | middle) s: $(ratio copy cp)"
paste <(column read) <(column write) | awk '{ print "bare", $1 + $2 }' >>results
echo "bare calls: writing $(column write | middle) s, extraction is $(ratio extract write) of it;" \
    "reading and writing $(column bare | middle) s, copy is $(ratio copy bare) of it"
