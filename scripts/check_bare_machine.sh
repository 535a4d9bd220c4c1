#!/usr/bin/env bash
# check_bare_machine.sh [FOLDER]: proves that the two commands of the README are all
# that a bare Debian 12 needs. Makes a minimal system in a folder, clones the commit
# that is checked out into it, and runs ./demo.sh and ./test.sh twice each. Prints how
# long each run took and its last line; logs of the runs stay in FOLDER.
#
# FOLDER (a temporary one if not given) keeps the minimal system as an archive, so that
# the next check is quicker. Needs root, debootstrap and git; see bare_root.sh.
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$(mktemp -d)}
# shellcheck disable=SC2034 # bare_root.sh's
me=check_bare_machine
. "$top/scripts/bare_root.sh"
project=/srv/project

require_tools debootstrap git
make_root

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
