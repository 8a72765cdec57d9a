#!/usr/bin/env bash
# Installs the Debian packages named as arguments that are missing. As root it runs apt-get;
# otherwise it prints the one command that would, and fails.
set -euo pipefail
missing=()
for pkg in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$pkg")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0
if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages. Install them with:"
    echo "  sudo apt-get update && sudo apt-get install -y ${missing[*]}"
    exit 1
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
