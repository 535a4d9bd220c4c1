#!/usr/bin/env bash
# check_packages.sh [FOLDER]: installs the Debian packages of build/release on a minimal
# Debian 12 with nothing else, runs the tool there, builds a program on the library and
# runs it, and takes the packages off again. Makes the packages first if there are none.
#
# FOLDER (a temporary one if not given) keeps the minimal system as an archive, so that
# the next check is quicker. Needs root and debootstrap; see bare_root.sh.
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$(mktemp -d)}
# shellcheck disable=SC2034 # bare_root.sh's
me=check_packages
. "$top/scripts/bare_root.sh"
build=${TABULEX_BUILD:-$top/build/release}

require_tools debootstrap dpkg-deb cpack
[ -f "$build/CPackConfig.cmake" ] || fail "no build in $build"
rm -rf "$folder/made"
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$folder/made" >"$folder/cpack.log" ||
    fail "the packages can't be made, see $folder/cpack.log"

make_root
mkdir "$root/srv/packages"
cp "$folder"/made/*.deb "$top/samples/day-no-header.csv" "$top/examples/read_file/main.cpp" \
    "$root/srv/packages"

install_log=$folder/install.log
in_system() { enter bash -euc "cd /srv/packages; $1"; }
apt='env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends'

echo "== tool"
in_system "apt-get -q update; $apt install ./tabulex_*.deb ./libtabulex[0-9]*.deb" \
    >"$install_log" 2>&1 || fail "the packages can't be installed, see $install_log"
in_system "tabulex --version; tabulex convert day-no-header.csv" | head -n 4
in_system "ldconfig -p | grep -q libTabulexConverter.so" || fail "the library isn't known to ld.so"

echo "== library"
in_system "$apt install ./libtabulex-dev_*.deb g++ pkgconf" >>"$install_log" 2>&1 ||
    fail "the headers can't be installed, see $install_log"
in_system "g++ main.cpp \$(pkg-config --cflags --libs tabulexconverter) -o read_file
           ./read_file day-no-header.csv" | head -n 3

echo "== taking them off"
in_system "$apt remove tabulex 'libtabulex*'" >>"$install_log" 2>&1 ||
    fail "the packages can't be removed, see $install_log"
left=$(in_system "find / -xdev -iname '*tabulex*' -not -path '/srv/*' -not -path '/proc/*' \
       -not -path '/var/*'")
[ -z "$left" ] || fail "left behind: $left"
echo "check_packages: all is well"
