#!/usr/bin/env bash
# Builds Billfold and runs the whole test suite through CTest.
# BILLFOLD_SANITIZE=1 builds with AddressSanitizer and UndefinedBehaviorSanitizer instead.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup-deps.sh"
options=(-DCMAKE_BUILD_TYPE=Debug -DBILLFOLD_WERROR=ON)
build="$root/build-test"
if [ "${BILLFOLD_SANITIZE:-0}" = 1 ]; then
    options+=(-DBILLFOLD_SANITIZE=ON -DBILLFOLD_BENCH=OFF)
    build="$root/build-asan"
    export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
    export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fi
mkdir -p "$build"
"$root/scripts/build.sh" "$build" "${options[@]}"
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)" --timeout 600
