#!/usr/bin/env bash
# Builds Billfold and runs it on the built-in sample content. Until the desktop window lands,
# "the program" is billfold-cli: it makes a new document in a temporary folder and reports
# what the document holds.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup-deps.sh"
build="$root/build-release"
mkdir -p "$build"
"$root/scripts/build.sh" "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBILLFOLD_BENCH=OFF
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$build/src/cli/billfold-cli" new "$work/Sample.tadb"
"$build/src/cli/billfold-cli" info "$work/Sample.tadb"
