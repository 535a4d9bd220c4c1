#!/usr/bin/env bash
# Sets up a Debian 12 machine, builds the library and the tool, and shows the tool at
# work on a sample: what it makes of a file by itself, and the rows that it reads.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/setup_machine.sh
scripts/build_preset.sh release tabulex

PATH=$PWD/build/release/bin:$PATH

# Prints the command as a user would type it, then runs it.
show() {
    printf '\n$ %s\n' "$*"
    "$@"
}

show head -n 2 samples/day-no-header.csv
show tabulex inspect samples/day-no-header.csv
show tabulex convert samples/junk.csv --output build/demo.jsonl
show head -n 2 build/demo.jsonl

printf '\nTry build/release/bin/tabulex --help, and inspect with a file of your own.\n'
