# shellcheck shell=bash disable=SC2034  # sourced: the others use what is set here
# Sourced by the other scripts: where things are, how they speak, what Wine is started with.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cache=${MIP_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/manual-install}

# Progress is for the eye; standard output is kept for what a script answers.
say() { echo "$*" >&2; }
die() { say "$(basename "$0"): $*"; exit 1; }

# run_logged LOG COMMAND...: quiet while it works, the end of its log when it does not.
run_logged() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 </dev/null || { tail -n 25 "$log" >&2; return 1; }
}

# hash_of FILES...: one short word for their contents.
hash_of() { cat "$@" | sha256sum | cut -c1-16; }

# A crash must end the program, not open a dialog; nothing is to be downloaded; no shortcut may reach the user's own menus.
wine_environment() {
    export WINEPREFIX=$1 WINEARCH=win32 WINEDEBUG=-all LC_ALL=${MIP_LOCALE:-C.UTF-8}
    export WINEDLLOVERRIDES="mscoree,mshtml,winedbg.exe,winemenubuilder.exe="
}

# end_wine PREFIX: ends the wineserver of this prefix and waits until it has written its registry.
end_wine() {
    WINEPREFIX=$1 wineserver -k 2>/dev/null || true
    WINEPREFIX=$1 wineserver -w 2>/dev/null || true
}
