#!/usr/bin/env bash
# Sets up a Debian 12 machine and runs every test: the optimised build, the build with
# the address and undefined-behaviour sanitizers, the tests that start threads under the
# thread sanitizer, and the Windows build under Wine. The tests of one preset run while the
# next one builds. Ends with the number of tests passed and failed in all.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"

passed=0
failed=0
running=     # the preset whose tests run
running_pid= # and their process

# A count from the head of a test report; 0 where the report lacks it.
count() { awk -F '"' -v key="$1=" '$1 ~ key"$" { n = $2; exit } END { print n + 0 }' "$2"; }

# start_tests PRESET [COMMAND...]: the command runs ctest, given as its arguments.
start_tests() {
    local preset=$1
    shift
    finish_tests
    rm -f "build/$preset/test-report.xml"
    "$@" ctest --preset "$preset" --parallel "$(nproc)" --no-tests=error \
        --output-junit "$PWD/build/$preset/test-report.xml" >"build/$preset/test.log" 2>&1 &
    running=$preset
    running_pid=$!
}

# Waits for the tests that run, adds to the counts, and shows what failed.
finish_tests() {
    [ -n "$running" ] || return 0
    local status=0 report=build/$running/test-report.xml log=build/$running/test.log
    wait "$running_pid" || status=$?
    echo "== test: $running"
    if [ ! -s "$report" ]; then
        cat "$log"
        echo "test: no report of the run with preset $running" >&2
        exit 1
    fi
    local bad all skipped
    all=$(count tests "$report")
    bad=$(count failures "$report")
    skipped=$(($(count skipped "$report") + $(count disabled "$report")))
    if [ "$status" -ne 0 ]; then
        cat "$log"
        echo "== failed: $running" # once more without what surrounds it, which is long
        grep -aE '\*\*\*|^\[  FAILED  \]|: Failure$|time limit passed' "$log" || true
        if [ "$bad" -eq 0 ]; then
            bad=1 # ctest itself failed
        fi
    fi
    grep -E 'tests passed|Total Test time' "$log"
    if [ "$skipped" -ne 0 ]; then
        echo "$running: $skipped skipped"
    fi
    passed=$((passed + all - bad - skipped))
    failed=$((failed + bad))
    running=
}

# Nothing is left running where this script ends early.
trap 'if [ -n "$running" ]; then kill "$running_pid" 2>/dev/null || true; fi' EXIT

scripts/setup_machine.sh windows
scripts/build_preset.sh release
start_tests release
scripts/build_preset.sh mingw
# The longest, and most of it is waiting.
WINEPREFIX=$PWD/build/wine start_tests mingw scripts/wine/with-wine.sh
scripts/build_preset.sh asan
start_tests asan
scripts/build_preset.sh tsan
start_tests tsan
finish_tests

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
