#!/usr/bin/env bash
# Pictures of the desktop host for the documentation: screenshots.sh [BUILD_DIR]
# Runs the example job (the example standard, settings and spreadsheet) with the command-line
# program, opens the result in kvhost under Xvfb on its first page and grabs the main window to
# docs/images/kvhost.png, and to docs/images/kvhost-LANG.png for each compiled translation.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$top/build}
kv="$build/refhost/cli/kvinsertauto"
kvhost="$build/refhost/app/kvhost"
for program in "$kv" "$kvhost"; do
    [[ -x "$program" ]] || { echo "screenshots.sh: $program: not built" >&2; exit 2; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$kv" load-standard --database "$work/example.db" \
    "$top/examples/standard/schema.sql" "$top/examples/standard/data.sql" >/dev/null
"$kv" run --settings "$top/examples/settings/example.cfa" \
    --sheet "$top/examples/sheets/example.xlsx" --database "$work/example.db" --standard IEC \
    --network-dir "$top/examples/network/" --language 1 --out "$work/pump-station.dxf" \
    >/dev/null 2>&1

# Settings of the host for this run only, never the person's own.
shoot() {
    local language=$1 picture=$2
    cat >"$work/kvhost.ini" <<INI
[standard]
database=$work/example.db
networkFolder=$top/examples/network
name=IEC
descriptionLanguage=1
[interface]
language=$language
INI
    XDG_CONFIG_HOME="$work/config" xvfb-run -a -s "-screen 0 1400x900x24" \
        "$kvhost" --config "$work/kvhost.ini" --plugins "$build/refhost/app/plugins" \
        --translations "$build/translations" "$work/pump-station.dxf" \
        --run "PAGE PAGE\$1" --run "ZOOM" --screenshot "$picture"
    echo "Wrote $picture"
}

mkdir -p "$top/docs/images"
shoot en "$top/docs/images/kvhost.png"
for qm in "$build"/translations/kvinsertauto_*.qm; do
    [[ -e "$qm" ]] || continue
    language=$(basename "$qm" .qm)
    language=${language#kvinsertauto_}
    shoot "$language" "$top/docs/images/kvhost-$language.png"
done
