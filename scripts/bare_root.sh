# shellcheck shell=bash
# bare_root.sh: a minimal Debian 12 in a folder, for scripts that prove what a bare machine needs.
# To be sourced, with `folder` and `me` set: where the system and its archive go, and the name of
# the script for messages. Needs root and debootstrap. The package archive is the one that this
# machine itself uses for Debian 12, with its proxy settings.

: "${me:?}" "${folder:?}"
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
base=$folder/bookworm.tar
root=$folder/root

fail() {
    echo "$me: $*" >&2
    exit 1
}

# require_tools TOOL...
require_tools() {
    [ "$(id -u)" -eq 0 ] || fail "needs root"
    for tool in "$@"; do
        command -v "$tool" >/dev/null || fail "needs $tool"
    done
}

# shellcheck disable=SC2016 # the names in the format are apt's
# A line "deb ADDRESS SUITE COMPONENT" for each source of Debian 12 on this machine.
debian_sources() {
    apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' \
        'Created-By: Packages' |
        awk '$1 == "Debian" && $3 ~ /^bookworm/ { print "deb", $2, $3, $4 }' | sort -u
}

leave() {
    umount "$root/dev/pts" "$root/proc" 2>/dev/null || true
    rm -rf --one-file-system "$root"
}

make_base() {
    local mirror
    mirror=$(debian_sources | awk '$3 == "bookworm" && $4 == "main" { print $2; exit }')
    [ -n "$mirror" ] || fail "apt of this machine knows no source of Debian 12 (run apt-get update)"
    echo "== minimal system"
    debootstrap --variant=minbase bookworm "$root" "$mirror" >"$folder/debootstrap.log" 2>&1 ||
        fail "debootstrap failed, see $folder/debootstrap.log"
    tar -C "$root" --one-file-system -cf "$base.part" .
    mv "$base.part" "$base"
}

# Runs a command in the system, with nothing of this one's surroundings but its proxies.
enter() {
    env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
        ${no_proxy:+no_proxy="$no_proxy"} chroot "$root" "$@"
}

# A fresh system, which goes when the script ends.
make_root() {
    trap leave EXIT
    leave
    mkdir -p "$root"
    if [ -f "$base" ]; then
        tar -C "$root" -xf "$base"
    else
        make_base
    fi
    mount -t proc proc "$root/proc"
    mount -t devpts devpts "$root/dev/pts" -o newinstance,ptmxmode=0666
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    rm -f "$root"/etc/apt/sources.list.d/*
    debian_sources >"$root/etc/apt/sources.list"
    apt-config dump | grep -iE '^Acquire::(http|https)::' >"$root/etc/apt/apt.conf.d/90network" ||
        true
}
