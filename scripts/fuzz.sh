#!/usr/bin/env bash
# Builds the libFuzzer targets (fuzz/) with clang-14 in a build directory of their own and runs
# each one in turn for a bounded time on a copy of its seed corpus.
#
#   scripts/fuzz.sh [SECONDS]     seconds per target, 45 when not given
#
# Environment:
#   KV_FUZZ_BUILD_DIR  build directory (default: build-fuzz in the source tree)
#   KV_FUZZ_WORK_DIR   where the corpus copies, crash inputs and logs go (default: a new
#                      temporary folder, kept and printed at the end)
#   KV_FUZZ_TARGETS    readers to run, separated by blanks (default: all of them)
#   KV_FUZZ_RSS_MB     memory limit of one target in MB (default 2048)
#   KV_FUZZ_TIMEOUT    seconds one input may take before it counts as a hang (default 10)
#   KV_JOBS            build jobs (default: the number of processors)
#
# Prints, per target, the executions, executions per second, corpus size and coverage. Exits
# non-zero when any target crashed, hung, ran out of memory or broke a reader's rule, after
# naming the input that did it; that input is then the start of a regression test (see
# docs/fuzzing.md). The committed seed corpora are only read.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-45}
if ! [[ "$seconds" =~ ^[1-9][0-9]*$ ]]; then
    echo "usage: scripts/fuzz.sh [SECONDS]" >&2
    exit 2
fi

for tool in clang-14 clang++-14 cmake ninja; do
    if ! command -v "$tool" >/dev/null; then
        echo "fuzz.sh: $tool is missing; run scripts/install-dependencies.sh" >&2
        exit 2
    fi
done
if ! compgen -G "/usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a" >/dev/null; then
    echo "fuzz.sh: the libFuzzer runtime is missing (package libclang-rt-14-dev);" \
        "run scripts/install-dependencies.sh" >&2
    exit 2
fi

readers=(settings_main settings_list workbook workbook_parts tree_json settings_json dxf_block
         dxf_drawing)
if [ -n "${KV_FUZZ_TARGETS:-}" ]; then
    read -r -a readers <<<"$KV_FUZZ_TARGETS"
fi

build=${KV_FUZZ_BUILD_DIR:-$top/build-fuzz}
jobs=${KV_JOBS:-$(nproc)}
# Only the fuzz targets and what they link are built; warnings stay warnings here, because
# clang warns about things that the gcc build (where they are errors) does not.
# A debug build (Q_ASSERT and the bounds checks in Qt's inline code stay on), optimised a little
# for speed.
CC=clang-14 CXX=clang++-14 cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_C_FLAGS_DEBUG="-g -O1" -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" \
    -DKV_FUZZ=ON -DKV_BUILD_TESTS=OFF -DKV_WERROR=OFF >/dev/null
targets=()
for reader in "${readers[@]}"; do
    targets+=("fuzz_$reader")
done
cmake --build "$build" -j "$jobs" --target "${targets[@]}"

work=${KV_FUZZ_WORK_DIR:-$(mktemp -d "${TMPDIR:-/tmp}/kv-fuzz-run.XXXXXX")}
mkdir -p "$work"
rss_mb=${KV_FUZZ_RSS_MB:-2048}
timeout_s=${KV_FUZZ_TIMEOUT:-10}

# Allocation stacks are kept two frames deep: the fast unwinder runs into Qt's frames (built
# without frame pointers) and picks up stack garbage, so deeper stacks are all different and the
# sanitizer's stack store grows by megabytes a second. A crash is replayed with full stacks by
# running the target on the crash input with ASAN_OPTIONS unset.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1:malloc_context_size=2:quarantine_size_mb=64}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$top/scripts/lsan.supp:print_suppressions=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export QT_QPA_PLATFORM=offscreen

dictionary_of() {
    case "$1" in
        settings_main | settings_list) echo "$top/fuzz/dict/settings.dict" ;;
        workbook | workbook_parts) echo "$top/fuzz/dict/xlsx.dict" ;;
        tree_json | settings_json) echo "$top/fuzz/dict/json.dict" ;;
        dxf_block | dxf_drawing) echo "$top/fuzz/dict/dxf.dict" ;;
    esac
}

# The value of libFuzzer's final statistic $2 in log $1.
stat_of() {
    sed -n "s/^stat::$2: *//p" "$1" | tail -n 1
}

summary=()
failed=()
for reader in "${readers[@]}"; do
    seeds="$top/fuzz/corpus/$reader"
    if [ ! -d "$seeds" ]; then
        echo "fuzz.sh: no seed corpus $seeds" >&2
        exit 2
    fi
    corpus="$work/corpus/$reader"
    artifacts="$work/artifacts/$reader"
    log="$work/$reader.log"
    rm -rf "$corpus" "$artifacts"
    mkdir -p "$corpus" "$artifacts"
    cp -p "$seeds"/* "$corpus"/
    seed_count=$(find "$corpus" -type f | wc -l)

    options=(-max_total_time="$seconds" -rss_limit_mb="$rss_mb" -timeout="$timeout_s"
             -print_final_stats=1 -artifact_prefix="$artifacts/")
    dict=$(dictionary_of "$reader")
    [ -n "$dict" ] && [ -f "$dict" ] && options+=(-dict="$dict")

    echo "== fuzz_$reader: $seconds s on $seed_count seeds"
    status=0
    "$build/fuzz/fuzz_$reader" "${options[@]}" "$corpus" >"$log" 2>&1 || status=$?

    runs=$(stat_of "$log" number_of_executed_units)
    speed=$(stat_of "$log" average_exec_per_sec)
    added=$(stat_of "$log" new_units_added)
    rss=$(stat_of "$log" peak_rss_mb)
    coverage=$(grep -Eo 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -n 1 || true)
    size=$(find "$corpus" -type f | wc -l)
    line=$(printf '%-16s runs %10s  exec/s %7s  corpus %5s (%s new)  %s  rss %s MB' \
        "$reader" "${runs:-?}" "${speed:-?}" "$size" "${added:-?}" "${coverage:-cov: ?}" "${rss:-?}")
    crash=$(find "$artifacts" -type f | head -n 1)
    if [ "$status" -ne 0 ] || [ -n "$crash" ]; then
        line="$line  FAILED (exit $status)"
        failed+=("$reader")
        echo "   fuzz_$reader failed with exit status $status; the report and the end of its log:" >&2
        grep -E -m 5 'runtime error:|ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|^fuzz_[a-z_]+: broken rule' \
            "$log" | sed 's/^/   > /' >&2 || true
        tail -n 40 "$log" | sed 's/^/   | /' >&2
        if [ -n "$crash" ]; then
            echo "   crashing input: $crash" >&2
            echo "   replay: $build/fuzz/fuzz_$reader $crash" >&2
        fi
    fi
    echo "   $line"
    summary+=("$line")
done

echo
echo "fuzzing summary ($seconds s per target; corpora, logs and crash inputs in $work):"
printf '  %s\n' "${summary[@]}"
if [ ${#failed[@]} -gt 0 ]; then
    echo "fuzz.sh: ${#failed[@]} target(s) failed: ${failed[*]}" >&2
    exit 1
fi
echo "fuzz.sh: ${#readers[@]} targets ran without a crash"
