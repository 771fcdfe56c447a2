#!/usr/bin/env bash
# Installs what a fresh Debian bookworm machine lacks to build and test Billfold.
# Idempotent and quiet when everything is present.
set -euo pipefail

packages=(
    build-essential cmake ninja-build ccache pkg-config clang-format
    qt6-base-dev qt6-base-dev-tools libqt6svg6-dev
    libsqlite3-dev libicu-dev libboost-dev zlib1g-dev rapidjson-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    poppler-utils
    desktop-file-utils xvfb xauth xdotool
    fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
