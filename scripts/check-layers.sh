#!/usr/bin/env bash
# Checks that includes run downward through the layers of src/: a file includes from its own
# top-level folder or from one listed before it, never from one after it. The order below is
# the one docs/ARCHITECTURE.md draws; a new top-level folder must be added here to build.
set -euo pipefail
cd "$(dirname "$0")/.."

layers=(foundation layoutvalues objectstore store billing document invoicelayout importsync
        resources toolkit cli shell)

declare -A rank
for i in "${!layers[@]}"; do
    rank[${layers[$i]}]=$i
done

status=0
for dir in src/*/; do
    folder=$(basename "$dir")
    if [ -z "${rank[$folder]+set}" ]; then
        echo "src/$folder: a top-level folder that is no layer of scripts/check-layers.sh"
        status=1
    fi
done

# "file:line:#include "folder/..."": each include of a file of another top-level folder.
while IFS=: read -r file line text; do
    from=$(echo "$file" | cut -d/ -f2)
    to=$(echo "$text" | sed -E 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"([^/"]+)\/.*/\1/')
    [ "$from" = "$to" ] && continue
    if [ -z "${rank[$to]+set}" ]; then
        continue # a folder of the file's own (e.g. "json/..."): not a layer
    fi
    if [ "${rank[$to]}" -gt "${rank[$from]}" ]; then
        echo "$file:$line: $from includes from $to, a layer above it"
        status=1
    fi
done < <(grep -rnE '^[[:space:]]*#[[:space:]]*include[[:space:]]*"[^/"]+/' src --include='*.h' \
             --include='*.cpp' || true)

[ $status -eq 0 ] && echo "layers: ok"
exit $status
