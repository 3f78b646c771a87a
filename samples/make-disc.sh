#!/usr/bin/env bash
# Makes the complete sample disc of disc.txt:  make-disc.sh OUT_DIR BUILD_WINDOWS_DIR BUILD_NATIVE_DIR
# Does nothing when OUT_DIR was made from the same files already.
set -euo pipefail
source "$(dirname "$0")/../tools/common.sh"
[ $# -eq 3 ] || die "say OUT_DIR BUILD_WINDOWS_DIR BUILD_NATIVE_DIR"
disc=${1%/} windows=$2 native=$3
samples=$root/samples
companions=$windows/samples

program=$windows/ManualInstall.exe
mkdisc=$native/tools/mkdisc/mkdisc
notices=$windows/NOTICES.txt
built=("$program" "$notices" "$mkdisc" "$companions"/{setup_manager,setup_link,setup_view,ManualManager,VBrowser}.exe)
for file in "${built[@]}"; do
    [ -f "$file" ] || die "$file is not built yet"
done

# The stamp lies beside the disc: nothing but the disc's own files may be in it.
stamp=$disc.stamp
mkdir -p "$(dirname "$disc")"
exec 7>"$disc.lock"
flock 7
inputs=$({ find "$samples" "$root/disc" -type f ! -path '*/__pycache__/*' -print0 | sort -z; printf '%s\0' "${built[@]}"; } \
    | xargs -0 sha256sum | sha256sum | cut -c1-32)
if [ -d "$disc" ] && [ "$(cat "$stamp" 2>/dev/null)" = "$inputs" ]; then
    exit 0
fi

say "Making the sample disc"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 -B "$samples/generate.py" sources "$work"
mkdir -p "$work/program" "$work/programs"/{man_manager,manual_link,View}
cp -p "$program" "$notices" "$work/program/"
cp -r "$root/disc/SysDir" "$work/program/"
cp -p "$companions/setup_manager.exe" "$work/programs/man_manager/setup.exe"
cp -p "$companions/ManualManager.exe" "$work/manager"/*.pdf "$work/programs/man_manager/"
cp -p "$companions/setup_link.exe" "$work/programs/manual_link/setup.exe"
cp -p "$companions/setup_view.exe" "$work/programs/View/setup.exe"
cp -p "$companions/VBrowser.exe" "$work/programs/View/"
rm -rf "$disc" "$stamp"
"$mkdisc" --program "$work/program" --programs "$work/programs" --sources "$work" --base "$work/earlier" \
    "$samples/disc.txt" "$disc"
echo "$inputs" >"$stamp"
