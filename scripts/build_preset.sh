#!/usr/bin/env bash
# build_preset.sh PRESET [TARGET...]: configures a preset and builds it, or only the
# targets named.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=$1
shift

echo "== build: $preset ${*:+($*)}"
# Configuring again costs a second and picks up a changed preset.
cmake --preset "$preset" --log-level=NOTICE >/dev/null
cmake --build --preset "$preset" --parallel "$(nproc)" ${@:+--target "$@"}
