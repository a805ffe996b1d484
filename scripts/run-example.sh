#!/usr/bin/env bash
# Runs the example job with an already built program: run-example.sh [BUILD_DIR]
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$top/build}
kv="$build/refhost/cli/kvinsertauto"
out="$build/example-output"
mkdir -p "$out"

rm -f "$out/example.db"
"$kv" load-standard --database "$out/example.db" \
    "$top/examples/standard/schema.sql" "$top/examples/standard/data.sql"

"$kv" run \
    --settings "$top/examples/settings/example.cfa" \
    --sheet "$top/examples/sheets/example.xlsx" \
    --database "$out/example.db" \
    --standard IEC \
    --network-dir "$top/examples/network/" \
    --out "$out/example.dxf" \
    --pages "$out/pages" \
    --trace "$out/trace.jsonl"

echo
echo "Drawing:  $out/example.dxf"
echo "Pages:    $out/pages/"
echo "Trace:    $out/trace.jsonl"
