#!/usr/bin/env bash
# Configures and builds one build tree. Usage: scripts/build.sh BUILD_DIR [cmake options...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$1
shift
# Paths relative to the checkout let ccache reuse objects between clones and build folders.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$root}" CCACHE_NOHASHDIR=1
mkdir -p "$build"
cmake -S "$root" -B "$build" -G Ninja "$@" >"$build/configure.log" 2>&1 || {
    cat "$build/configure.log"
    exit 1
}
cmake --build "$build" -j"$(nproc)"
