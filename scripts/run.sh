#!/usr/bin/env bash
# Builds Billfold and starts the desktop program on a new copy of the built-in sample
# business, as the welcome window's "Open the Sample Business" does. With no display it runs
# the program on a virtual screen instead and writes pictures of its window into a folder.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup-deps.sh"
build="$root/build-release"
"$root/scripts/build.sh" "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBILLFOLD_BENCH=OFF \
    -DBILLFOLD_TESTS=OFF
app="$build/src/shell/billfold"
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$app" --sample
fi
shots="$root/screenshots"
echo "No display (DISPLAY and WAYLAND_DISPLAY are unset): running Billfold on a virtual screen; pictures of its window go to $shots"
settings=$(mktemp -d)
trap 'rm -rf "$settings"' EXIT
mkdir -p "$shots"
XDG_CONFIG_HOME="$settings" xvfb-run -a -s "-screen 0 1600x1000x24" "$app" --screenshots "$shots"
