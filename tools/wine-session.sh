#!/usr/bin/env bash
# Runs a command in a Wine session of its own: a prefix, its wineserver, and a screen.
#   wine-session.sh [--prefix DIR] [--screen WxH | --real-screen] COMMAND...
#     --prefix DIR    use this prefix and keep it; without it a fresh one is thrown away at the end
#     --screen WxH    size of the virtual screen, 1024x768 when not said
#     --real-screen   use the display that is there
# The command finds its virtual screen's picture in $MIP_FRAMEBUFFER.
set -euo pipefail
source "$(dirname "$0")/common.sh"

prefix=
screen=1024x768
while [ $# -gt 0 ]; do
    case $1 in
        --prefix) prefix=$2; shift 2 ;;
        --screen) screen=$2; shift 2 ;;
        --real-screen) screen=; shift ;;
        --) shift; break ;;
        *) break ;;
    esac
done
[ $# -gt 0 ] || die "a command is missing"

work=$(mktemp -d "${TMPDIR:-/tmp}/mip-session.XXXXXX")
display_server=
# shellcheck disable=SC2317  # called by the trap
close_session() {
    trap '' INT TERM
    end_wine "$WINEPREFIX"
    [ -z "$display_server" ] || kill "$display_server" 2>/dev/null || true
    rm -rf "$work"
}

# The server itself picks a display number that is free, so that sessions can start side by side.
open_screen() {
    local number
    mkfifo "$work/number"
    Xvfb -displayfd 3 -screen 0 "${screen}x24" -fbdir "$work" -nolisten tcp -ac -noreset \
        3>"$work/number" 9>&- >"$work/xvfb.log" 2>&1 </dev/null &
    display_server=$!
    number=
    read -r -t 30 number <"$work/number" || true
    [ -n "$number" ] || { cat "$work/xvfb.log" >&2; die "the virtual screen did not start"; }
    export DISPLAY=:$number MIP_FRAMEBUFFER=$work/Xvfb_screen0
}

# One session at a time in a prefix: the end of one would end the programs of the other. Only this script holds the lock:
# what it starts may outlive it for a moment, and would keep the next session out.
if [ -n "$prefix" ]; then
    exec 9>"$prefix.lock"
    flock -n 9 || die "another session is in $prefix"
fi

wine_environment "${prefix:-$work/prefix}"
trap close_session EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
[ -n "$prefix" ] || "$root/tools/wine-prefix.sh" new "$work/prefix"
[ -z "$screen" ] || open_screen

# A wineserver that stays: without it every program leaves helpers behind that hold the caller's output for seconds.
wineserver -p 9>&-
timeout 120 wine cmd /c exit 9>&- >/dev/null 2>&1 </dev/null || die "Wine does not start in $WINEPREFIX"

export MIP_WINE_SESSION=1
status=0
"$@" 9>&- || status=$?
exit $status
