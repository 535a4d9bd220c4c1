#!/usr/bin/env bash
# Sets up a Debian 12 machine and runs every test: the optimised build, the build with
# the address and undefined-behaviour sanitizers, the tests that start threads under the
# thread sanitizer, and the Windows build under Wine. Ends with the number of tests passed
# and failed in all.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"

passed=0
failed=0

# A count from the head of a test report; 0 where the report lacks it.
count() { awk -F '"' -v key="$1=" '$1 ~ key"$" { n = $2; exit } END { print n + 0 }' "$2"; }

# run_tests PRESET [COMMAND...]: the command runs ctest, given as its arguments.
run_tests() {
    local preset=$1 report status=0
    shift
    report=$PWD/build/$preset/test-report.xml
    echo "== test: $preset"
    rm -f "$report"
    "$@" ctest --preset "$preset" --parallel "$(nproc)" --no-tests=error --progress \
        --output-junit "$report" || status=$?
    if [ ! -s "$report" ]; then
        echo "test: no report of the run with preset $preset" >&2
        exit 1
    fi
    local bad all skipped
    all=$(count tests "$report")
    bad=$(count failures "$report")
    skipped=$(($(count skipped "$report") + $(count disabled "$report")))
    if [ "$status" -ne 0 ] && [ "$bad" -eq 0 ]; then
        bad=1 # ctest itself failed
    fi
    if [ "$skipped" -ne 0 ]; then
        echo "$preset: $skipped skipped"
    fi
    passed=$((passed + all - bad - skipped))
    failed=$((failed + bad))
}

scripts/setup_machine.sh
for preset in release asan tsan; do
    scripts/build_preset.sh "$preset"
    run_tests "$preset"
done

scripts/setup_machine.sh windows
scripts/build_preset.sh mingw
WINEPREFIX=$PWD/build/wine run_tests mingw scripts/wine/with-wine.sh

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
