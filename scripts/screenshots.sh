#!/usr/bin/env bash
# Pictures of the desktop program on a copy of the sample business, for looking at it as a
# person would: every section, menu and dialog, at scale 1 and 2 and with a dark palette, on
# a virtual screen (Xvfb). Usage: scripts/screenshots.sh OUT_DIR
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${1:?usage: scripts/screenshots.sh OUT_DIR}
"$root/scripts/setup-deps.sh"
build="$root/build-release"
"$root/scripts/build.sh" "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBILLFOLD_BENCH=OFF \
    -DBILLFOLD_TESTS=OFF
app="$build/src/shell/billfold"

# A settings folder of its own, so that the pictures never depend on (or change) the user's.
settings=$(mktemp -d)
trap 'rm -rf "$settings"' EXIT
shoot() {
    local folder=$1
    shift
    mkdir -p "$out/$folder"
    env XDG_CONFIG_HOME="$settings" "$@" xvfb-run -a -s "-screen 0 2600x1800x24" \
        "$app" --screenshots "$out/$folder" ${dark:+--dark} >/dev/null
}
dark= shoot scale1
dark= shoot scale2 QT_SCALE_FACTOR=2
dark=1 shoot dark
echo "Screenshots: $out/scale1, $out/scale2, $out/dark"
