#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds the fuzzers and runs them for so long in all (a minute if not
# given), each from the inputs that fuzz/corpus and samples keep. Inputs that reach new code
# gather in build/fuzz/corpus. An input that shows a fault is left in build/fuzz/faults; mend
# the fault and keep the input in fuzz/corpus/TARGET, under a name that says what it is.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${1:-60}
targets=(ConvertFile MatchTemplate ReadDocument)

scripts/build_preset.sh fuzz
mkdir -p build/fuzz/faults
for target in "${targets[@]}"; do
    gathered=build/fuzz/corpus/$target
    kept=(fuzz/corpus/"$target")
    if [ "$target" = ConvertFile ]; then
        kept+=(samples)
    fi
    mkdir -p "$gathered"
    echo "== fuzz: $target"
    build/fuzz/bin/fuzz_"$target" -max_total_time=$((seconds / ${#targets[@]})) -timeout=60 \
        -max_len=4096 -verbosity=0 -print_funcs=0 -print_final_stats=1 \
        -artifact_prefix=build/fuzz/faults/"$target"- "$gathered" "${kept[@]}" 2>&1 |
        sed '/^###### Recommended dictionary/,/^###### End/d'
done
