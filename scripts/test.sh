#!/usr/bin/env bash
# Runs the whole test suite: a build with AddressSanitizer and UndefinedBehaviorSanitizer,
# a throw-away PostgreSQL server on loopback for the database tests, then CTest.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
"$top/scripts/install-dependencies.sh"

build=${KV_TEST_BUILD_DIR:-$top/build-asan}
jobs=${KV_JOBS:-$(nproc)}
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKV_SANITIZE=ON >/dev/null
cmake --build "$build" -j "$jobs"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$top/scripts/lsan.supp:print_suppressions=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export QT_QPA_PLATFORM=offscreen

# shellcheck source=pg-throwaway.sh
source "$top/scripts/pg-throwaway.sh"
if pg_throwaway_start; then
    trap pg_throwaway_stop EXIT
else
    echo "test.sh: PostgreSQL could not be started; its tests will be skipped" >&2
fi

ctest --test-dir "$build" --output-on-failure -j "$jobs" --timeout 600
