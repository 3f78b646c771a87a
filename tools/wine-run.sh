#!/usr/bin/env bash
# Runs one Windows program: wine-run.sh PROGRAM.EXE [ARGUMENTS...]. Inside wine-session.sh it runs there, else in a session
# of its own. Its exit status is the program's; a program that hangs is ended after $MIP_WINE_TIMEOUT seconds.
set -uo pipefail
tools=$(cd "$(dirname "$0")" && pwd)
[ -n "${MIP_WINE_SESSION:-}" ] || exec "$tools/wine-session.sh" "$0" "$@"

# Wine's helper processes inherit the output, and who reads a pipe would wait for them; so it goes through a file.
output=$(mktemp)
trap 'rm -f "$output"' EXIT
timeout -k 5 "${MIP_WINE_TIMEOUT:-110}" wine "$@" >"$output" 2>&1 </dev/null
status=$?
tr -d '\r' <"$output"
[ $status -ne 124 ] || echo "wine-run.sh: ended after ${MIP_WINE_TIMEOUT:-110} s: $1"
exit $status
