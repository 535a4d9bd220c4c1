#!/usr/bin/env bash
# setup_machine.sh [windows]: installs what is missing of packages.txt, and with "windows"
# of packages-windows.txt too, as root or through sudo. Says nothing and touches nothing
# when all of it is there.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"

lists=(packages.txt ${1:+"packages-$1.txt"})

wanted() { sed -e 's/#.*//' "${lists[@]}" | awk 'NF { print $1 }'; }

missing() {
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' 2>/dev/null |
        sed -n 's/^ii //p' | sort -u)
    comm -23 <(wanted | sort -u) <(printf '%s\n' "$installed")
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "setup: installing needs root or sudo: $*" >&2
        return 1
    fi
}

if ! command -v dpkg-query >/dev/null; then
    echo "setup: no dpkg on this machine; install by hand what scripts/${lists[*]} lists" >&2
    exit 0
fi

mapfile -t packages < <(missing)
if [ "${#packages[@]}" -eq 0 ]; then
    exit 0
fi

echo "setup: installing ${packages[*]}"
as_root apt-get update -q
as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${packages[@]}"
