#!/usr/bin/env bash
# Inside a Wine session: starts the program from drive D: as ./run was asked to.
#   start-program.sh window|unattended|screens SCREENS_DIR [ARGUMENTS OF THE PROGRAM]
set -euo pipefail
source "$(dirname "$0")/common.sh"
source "$root/samples/computer.conf"
mode=$1 screens=$2
shift 2

start_window() { wine "$program_windows" "$@" >/dev/null 2>&1 </dev/null; }

print_catalogue() {
    local catalogue=$WINEPREFIX/$catalogue_file
    echo
    [ -f "$catalogue" ] || { echo "There is no catalogue at $catalogue"; return; }
    sqlite3 -readonly -column -header "$catalogue" "
        select Pub_No as Publication, Version as Edition, Lang as Language, INSDate as Installed, INSPath as Folder
        from M_manage order by INSDate, Pub_No"
    echo
}

start_unattended() {
    local log=$WINEPREFIX/drive_c/install.log status=0
    rm -f "$log"
    wine "$program_windows" /VERYSILENT /ACCEPT '/LOG=C:\install.log' "$@" >/dev/null 2>&1 </dev/null || status=$?
    [ ! -f "$log" ] || tr -d '\r' <"$log"
    print_catalogue
    echo "Exit status $status"
    return $status
}

# The tour asks for a picture by a file; see screenshots.py.
start_tour() {
    local status=0
    mkdir -p "$screens"
    rm -f "$screens"/*.png "$screens"/*.request
    "$root/tools/screenshots/screenshots.py" "$MIP_FRAMEBUFFER" "$screens" &
    photographer=$!
    trap 'kill $photographer 2>/dev/null || true' EXIT
    "$root/tools/wine-run.sh" "$root/build/windows/tools/screenshots/tour.exe" "$program_windows" "Z:${screens//\//\\}" "$@" ||
        status=$?
    "$root/tools/wine-run.sh" "$root/build/windows/tools/screenshots/boxes.exe" "${program_windows%\\*}\\SysDir" \
        "Z:${screens//\//\\}" "$@" || status=$?
    return $status
}

case $mode in
    window) start_window "$@" ;;
    unattended) start_unattended "$@" ;;
    screens) start_tour "$@" ;;
    *) die "unknown mode $mode" ;;
esac
