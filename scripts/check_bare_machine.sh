#!/usr/bin/env bash
# check_bare_machine.sh [FOLDER]: proves that the two commands of the README are all
# that a bare Debian 12 needs. Makes a minimal system in a folder, clones the commit
# that is checked out into it, and runs ./demo.sh and ./test.sh twice each. Prints how
# long each run took and its last line; logs of the runs stay in FOLDER.
#
# FOLDER (a temporary one if not given) keeps the minimal system as an archive, so that
# the next check is quicker. Needs root, debootstrap and git. The package archive is the
# one that this machine itself uses for Debian 12, with its proxy settings.
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$(mktemp -d)}
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
base=$folder/bookworm.tar
root=$folder/root
project=/srv/project

fail() {
    echo "check_bare_machine: $*" >&2
    exit 1
}

[ "$(id -u)" -eq 0 ] || fail "needs root"
for tool in debootstrap git; do
    command -v "$tool" >/dev/null || fail "needs $tool"
done

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

enter() {
    env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
        ${no_proxy:+no_proxy="$no_proxy"} chroot "$root" "$@"
}

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
apt-config dump | grep -iE '^Acquire::(http|https)::' >"$root/etc/apt/apt.conf.d/90network" || true

git clone -q --no-hardlinks "$top" "$root$project"
echo "== commit $(git -C "$root$project" log -1 --format='%h %s')"

status=0
for run in 1 2; do
    for command in demo test; do
        log=$folder/$command-$run.log
        start=$SECONDS
        # Away from the project's folder, as a user might call it.
        if enter bash -c "cd /tmp && exec $project/$command.sh" </dev/null >"$log" 2>&1; then
            result="well"
        else
            result="status $?"
            status=1
        fi
        printf './%s.sh, run %d: %s, %d s: %s\n' \
            "$command" "$run" "$result" $((SECONDS - start)) "$(tail -n 1 "$log")"
    done
done
exit "$status"
