#!/usr/bin/env bash
# tidy.sh [COMMIT]: clang-tidy, with the checks of .clang-tidy, over the sources of the layers
# and the tool that have changed since COMMIT (scripts/changes_since.sh if not given). Without
# git's history it checks the layers of src. Fails for any finding. So that it stays quick it
# looks at a bounded number of files, those changed last, and names those that it leaves out.
# The target `tidy` goes over the whole tree.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

most=12 # some 10 s each on a slow core

# Those changed last come first.
sources() {
    local base ours=('*.cpp' '*.h' ':!tests' ':!bench' ':!fuzz')
    if base=${1:-$(scripts/changes_since.sh)}; then
        git diff --name-only HEAD -- "${ours[@]}"
        git log --format= --name-only "$base"..HEAD -- "${ours[@]}"
    else
        ls src/*/*.cpp
    fi
}

# A header is looked at through the source of its name.
once() { sed 's/h$/cpp/' | awk '!seen[$0]++'; }

is_compiled() { grep -qF "\"file\": \"$PWD/$1\"" build/tidy/compile_commands.json; }

# left_out WHY FILE...: names the files that aren't looked at.
left_out() {
    local why=$1
    shift
    if [ "$#" -gt 0 ]; then
        echo "tidy: left out, $why: $# files"
        printf '    %s\n' "$@"
    fi
}

# No sources are joined here: each is looked at by itself.
cmake --preset release -B build/tidy -DTABULEX_UNITY=OFF -DTABULEX_PCH=OFF --log-level=NOTICE >/dev/null

files=()
foreign=()
mapfile -t changed < <(sources "$@" | once)
for file in "${changed[@]}"; do
    if is_compiled "$file"; then
        files+=("$file")
    elif [ -f "$file" ]; then
        foreign+=("$file")
    elif [ -f "${file%cpp}h" ]; then
        foreign+=("${file%cpp}h")
    fi # else it has been removed
done
left_out "no source that is compiled on this system" "${foreign[@]}"
if [ "${#files[@]}" -gt "$most" ]; then
    left_out "more than $most have changed" "${files[@]:most}"
    files=("${files[@]:0:most}")
fi

echo "== tidy: ${#files[@]} files"
if [ "${#files[@]}" -eq 0 ]; then
    exit 0
fi
# Counts of what is in the system's headers, and isn't shown, say nothing.
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" \
    clang-tidy -quiet -p build/tidy "-extra-arg-before=-isystem$PWD/cmake/clang-14" 2>&1 |
    sed -E '/^[0-9]+ warnings?( and [0-9]+ errors?)? generated\.$/d'
