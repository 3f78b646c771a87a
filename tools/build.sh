#!/usr/bin/env bash
# Configures and builds one preset: build.sh native|windows [TARGET...]. Quiet unless something fails.
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

preset=$1
shift
log=build/$preset.log
mkdir -p build
# Folders differ from clone to clone; the compiler cache need not.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
[ "$preset" != windows ] || "$root/tools/build-dependencies.sh" >/dev/null
say "Building: $preset"
run_logged "$log" cmake --preset "$preset" || die "configuring the $preset build failed"
run_logged "$log" cmake --build --preset "$preset" -j "$(nproc)" ${1:+--target "$@"} || die "the $preset build failed; all of it is in $log"
