#!/usr/bin/env bash
# Installs, with apt, everything needed to build and test on a fresh Debian 12 machine.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mapfile -t packages < <(grep -v '^#' "$here/dependencies.txt" | sed '/^$/d')
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
    echo "dependencies: all ${#packages[@]} packages already installed"
    exit 0
fi
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "dependencies: installing ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
