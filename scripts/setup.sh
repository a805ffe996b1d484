#!/usr/bin/env bash
# Fresh Debian 12 machine to a finished example run: installs the dependencies with apt, builds,
# loads the example standard into SQLite and runs the example job (spreadsheet import, then the
# insertion), leaving a DXF drawing, one picture per page and the trace of the run.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
"$top/scripts/install-dependencies.sh"

build=${KV_BUILD_DIR:-$top/build}
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DKV_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$(nproc)"

exec "$top/scripts/run-example.sh" "$build"
