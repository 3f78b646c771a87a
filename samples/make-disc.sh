#!/usr/bin/env bash
# Makes the complete sample disc:  make-disc.sh OUT_DIR BUILD_WINDOWS_DIR BUILD_NATIVE_DIR
# Does nothing when OUT_DIR was made from the same files already.
set -euo pipefail
source "$(dirname "$0")/../tools/common.sh"
[ $# -eq 3 ] || die "say OUT_DIR BUILD_WINDOWS_DIR BUILD_NATIVE_DIR"
disc=${1%/} windows=$2 native=$3
samples=$root/samples
companions=$windows/samples

program=$windows/ManualInstall.exe
mkcatalogue=$native/tools/mkcatalogue/mkcatalogue
notices=$windows/NOTICES.txt
built=("$program" "$notices" "$mkcatalogue" "$companions"/{setup_manager,setup_link,setup_view,ManualManager,VBrowser}.exe)
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
new=$disc.new
rm -rf "$new"
setup=$new/programs/setup
mkdir -p "$setup" "$new/programs/man_manager" "$new/programs/manual_link" "$new/programs/View"
python3 -B "$samples/generate.py" disc "$new"
cp "$root/disc/install.html" "$new/"
cp -r "$root/disc/SysDir" "$setup/"
cp -p "$program" "$setup/ManualInstall.exe"
cp -p "$notices" "$setup/"
"$mkcatalogue" "$samples/catalogue-new.txt" "$setup/kvx3new.mdb"
cp -p "$companions/setup_manager.exe" "$new/programs/man_manager/setup.exe"
cp -p "$companions/ManualManager.exe" "$new/programs/man_manager/"
cp -p "$companions/setup_link.exe" "$new/programs/manual_link/setup.exe"
cp -p "$companions/setup_view.exe" "$new/programs/View/setup.exe"
cp -p "$companions/VBrowser.exe" "$new/programs/View/"
rm -rf "$disc" "$stamp"
mv "$new" "$disc"
echo "$inputs" >"$stamp"
