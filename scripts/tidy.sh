#!/usr/bin/env bash
# tidy.sh [COMMIT]: clang-tidy, with the checks of .clang-tidy, over the sources that have
# changed since COMMIT (scripts/changes_since.sh if not given), as far as they are compiled
# on this system. Without git's history it checks the layers of src. The target `tidy` goes
# over the whole tree.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

most=12 # some 10 s each on a slow core

sources() {
    local base
    if base=${1:-$(scripts/changes_since.sh)}; then
        git diff --name-only --diff-filter=d "$base" -- '*.cpp'
        # A header is looked at through the source of its name.
        git diff --name-only --diff-filter=d "$base" -- '*.h' | sed 's/h$/cpp/'
    else
        ls src/*/*.cpp
    fi
}

# No sources are joined here: each is looked at by itself.
cmake --preset release -B build/tidy -DTABULEX_UNITY=OFF -DTABULEX_PCH=OFF --log-level=NOTICE >/dev/null
mapfile -t files < <(sources "$@" | sort -u | while read -r file; do
    if grep -qF "\"file\": \"$PWD/$file\"" build/tidy/compile_commands.json; then
        echo "$file"
    fi
done)
if [ "${#files[@]}" -gt "$most" ]; then
    echo "tidy: $((${#files[@]} - most)) of ${#files[@]} changed files are left out"
    mapfile -t files < <(ls -t "${files[@]}" | head -n "$most")
fi
echo "== tidy: ${#files[@]} files"
printf '%s\0' "${files[@]}" | xargs -0 -r -n 1 -P "$(nproc)" \
    clang-tidy -quiet -p build/tidy "-extra-arg-before=-isystem$PWD/cmake/clang-14"
