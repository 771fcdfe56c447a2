#!/usr/bin/env bash
# Fails when a C++ file of the tree is not formatted as .clang-format says.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
git ls-files -- '*.cpp' '*.h' | xargs -r clang-format --dry-run --Werror
