#!/usr/bin/env bash
# Builds Billfold and runs it on the built-in sample business. Until the desktop window lands,
# "the program" is billfold-cli: it makes the sample document in a temporary folder, reports
# what it holds and lists its invoices with their computed totals and states.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup-deps.sh"
build="$root/build-release"
mkdir -p "$build"
"$root/scripts/build.sh" "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBILLFOLD_BENCH=OFF
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cli="$build/src/cli/billfold-cli"
"$cli" new "$work/Sample.tadb" --sample
"$cli" info "$work/Sample.tadb"
"$cli" list invoices "$work/Sample.tadb"
"$cli" list clients "$work/Sample.tadb"
