#!/usr/bin/env bash
# Turns a fresh Wine prefix into the sample workshop computer:
#   make-computer.sh PREFIX BUILD_WINDOWS_DIR BUILD_NATIVE_DIR
# The diagnostic program and some manuals are installed; the manager and the viewer are not. computer.conf says where
# things are.
set -euo pipefail
source "$(dirname "$0")/../tools/common.sh"
[ $# -eq 3 ] || die "say PREFIX BUILD_WINDOWS_DIR BUILD_NATIVE_DIR"
prefix=$1 windows=$2 native=$3
samples=$root/samples
source "$samples/computer.conf"
[ -f "$prefix/system.reg" ] || die "$prefix is no Wine prefix; make it with tools/wine-prefix.sh new"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The maker's keys, as the installer of the diagnostic program leaves them.
registry_settings() {
    cat <<'REG'
Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\SOFTWARE\VANTOR\Korvex]
"ProgramPath"="C:\\Program Files\\Vantor\\Korvex"

[HKEY_LOCAL_MACHINE\SOFTWARE\Vantor\Korvex\ManualLink]
"InstallDir"="C:\\Program Files\\Vantor\\Korvex\\Manual"
REG
}

say "Making the sample workshop computer"
mkdir -p "$prefix/$catalogue_folder" "$prefix/$library_folder"
cp "$windows/samples/KVX3.exe" "$prefix/$catalogue_folder/"
"$native/tools/mkcatalogue/mkcatalogue" "$samples/catalogue-old.txt" "$prefix/$catalogue_file"
python3 -B "$samples/generate.py" computer "$prefix/$library_folder" "$work/rows.sql"
sqlite3 -bail "$prefix/$catalogue_file" ".read $work/rows.sql"

wine_environment "$prefix"
registry_settings >"$work/computer.reg"
run_logged "$work/log" timeout 120 wine regedit /S "$work/computer.reg"
# The registry is on disk only when the server of this prefix has ended, and the prefix is about to be copied.
end_wine "$prefix"
