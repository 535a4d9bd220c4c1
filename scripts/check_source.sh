#!/usr/bin/env bash
# check_source.sh: what can be said of the sources without building them: their format, the
# marks of measure_code.py, and the length of new commits' subjects.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

longest_subject=72

# The tree's own, also where git doesn't know it.
sources() {
    git ls-files '*.cpp' '*.h' '*.hpp' 2>/dev/null ||
        find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' -o -name '*.hpp' \) -print
}

status=0

echo "== format"
sources | xargs clang-format --dry-run --Werror || status=1

echo "== figures"
scripts/measure_code.py || status=1

if base=$(scripts/changes_since.sh); then
    echo "== subjects of commits"
    git log --format='%h %s' "$base..HEAD" | awk -v most="$longest_subject" '
        { subject = substr($0, index($0, " ") + 1) }
        length(subject) > most { print "longer than " most ": " $0; bad = 1 }
        END { exit bad }' || status=1
fi
exit "$status"
