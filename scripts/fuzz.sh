#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds the fuzzers and runs them side by side, for so many seconds of
# processor time in all (a minute if not given), each from the inputs that fuzz/corpus and
# samples keep. Inputs that reach new code gather in build/fuzz/corpus. An input that shows a
# fault is left in build/fuzz/faults; mend the fault and keep the input in fuzz/corpus/TARGET,
# under a name that says what it is.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${1:-60}
targets=(AdviseFile CleanLines ConvertFile MatchTemplate ReadDocument)
at_once=$(nproc)
if [ "$at_once" -gt "${#targets[@]}" ]; then
    at_once=${#targets[@]}
fi

run() {
    local target=$1 gathered=build/fuzz/corpus/$1 kept=(fuzz/corpus/"$1")
    if [ "$target" = ConvertFile ] || [ "$target" = AdviseFile ]; then
        kept+=(samples)
    fi
    mkdir -p "$gathered"
    build/fuzz/bin/fuzz_"$target" -max_total_time=$((seconds / at_once)) -timeout=60 \
        -max_len=4096 -verbosity=0 -print_funcs=0 -print_final_stats=1 \
        -artifact_prefix=build/fuzz/faults/"$target"- "$gathered" "${kept[@]}" 2>&1 |
        sed '/^###### Recommended dictionary/,/^###### End/d'
}

scripts/build_preset.sh fuzz
mkdir -p build/fuzz/faults
declare -A runs
for target in "${targets[@]}"; do
    run "$target" >build/fuzz/"$target".log &
    runs[$target]=$!
done
status=0
for target in "${targets[@]}"; do
    wait "${runs[$target]}" || status=1
    echo "== fuzz: $target"
    cat build/fuzz/"$target".log
done
exit "$status"
