#!/usr/bin/env bash
# Configures and builds one preset of CMakePresets.json: build.sh PRESET [TARGET...]. Quiet unless something fails; what
# the two steps say is kept in build/PRESET-configure.log and build/PRESET.log.
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

[ $# -gt 0 ] || die "say PRESET [TARGET...]"
preset=$1
shift
configure_log=build/$preset-configure.log
log=build/$preset.log
mkdir -p build
# Folders differ from clone to clone; the compiler cache need not.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
[ "$preset" != windows ] || "$root/tools/build-dependencies.sh" >/dev/null
say "Building: $preset"
run_logged "$configure_log" cmake --preset "$preset" ||
    die "configuring the $preset build failed; all of it is in $configure_log"
run_logged "$log" cmake --build --preset "$preset" -j "$(nproc)" ${1:+--target "$@"} ||
    die "the $preset build failed; all of it is in $log"
