#!/bin/sh
# Regenerates the module's translation files (src/resources/translations/*.ts) from the texts in src/,
# and the desktop host's (refhost/app/translations/kvhost_*.ts) from the texts in refhost/app/.
#
#   scripts/update-translations.sh [--output DIR]
#
# The module shows its texts through kvTr(text) and kvTrOffice(text) (src/host/Translate.h), which
# translate with the fixed contexts "KVInsertAuto" and "KVOfficeSystem". lupdate only knows contexts
# given at the call, so the sources are copied to a scratch folder in which each call is rewritten to
# QT_TRANSLATE_NOOP("KVInsertAuto", text) or QT_TRANSLATE_NOOP("KVOfficeSystem", text) on the same
# line; lupdate then reads the copy. The copy keeps the tree's layout, so the file names and line
# numbers in the .ts files point at the real sources.
#
# Each context has its own files, so lupdate runs twice per language over a copy in which only that
# context's calls are visible. Texts that left the code stay in the files as "vanished" (lrelease
# skips them), so that a text that comes back keeps its translation.
#
# The desktop host marks its texts the ordinary way (tr() in its classes, QCoreApplication::translate
# with the context "kvhost" elsewhere), so lupdate reads a plain copy of refhost/app/, once per
# language, into kvhost_<language>.ts.
#
# With --output DIR the updated files are written to DIR and the tree is left alone (the tests use
# this to check that the files in the tree are up to date). LUPDATE names the lupdate program.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
tsdir="$root/src/resources/translations"
hosttsdir="$root/refhost/app/translations"
outdir="$tsdir"
if [ "${1:-}" = "--output" ] && [ -n "${2:-}" ]; then
    mkdir -p "$2"
    outdir=$(cd "$2" && pwd)
elif [ -n "${1:-}" ]; then
    echo "usage: $0 [--output DIR]" >&2
    exit 2
fi

if [ -z "${LUPDATE:-}" ]; then
    if [ -x /usr/lib/qt6/bin/lupdate ]; then
        LUPDATE=/usr/lib/qt6/bin/lupdate
    else
        LUPDATE=lupdate
    fi
fi

languages="pt_BR es"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT INT TERM

# copy_sources CONTEXT FUNCTION: copies src/ to $scratch/CONTEXT/src with FUNCTION(...) calls
# rewritten for lupdate. Calls of the other wrapper and any QT_TRANSLATE_NOOP of another context are
# hidden, so that each run sees its own context only.
copy_sources() {
    context=$1
    function=$2
    dest="$scratch/$context/src"
    mkdir -p "$dest"
    (cd "$root/src" && find . -type f \( -name '*.cpp' -o -name '*.h' \) \
        ! -path './host/Translate.h') | while read -r file; do
        mkdir -p "$dest/$(dirname "$file")"
        sed -E \
            -e "s/QT_TRANSLATE_NOOP\\(\"([A-Za-z]+)\"/KV_NOOP_\\1(\"\\1\"/g" \
            -e "s/KV_NOOP_$context\\(/QT_TRANSLATE_NOOP(/g" \
            -e "s/(^|[^A-Za-z0-9_])$function\\(/\\1QT_TRANSLATE_NOOP(\"$context\", /g" \
            "$root/src/$file" >"$dest/$file"
    done
    mkdir -p "$dest/resources/translations"
}

# update CONTEXT FUNCTION BASENAME: brings $outdir/BASENAME_<language>.ts up to date.
update() {
    context=$1
    function=$2
    base=$3
    copy_sources "$context" "$function"
    for language in $languages; do
        ts="$scratch/$context/src/resources/translations/${base}_$language.ts"
        if [ -f "$tsdir/${base}_$language.ts" ]; then
            cp "$tsdir/${base}_$language.ts" "$ts"
        fi
        "$LUPDATE" -silent -extensions cpp,h -locations absolute -target-language "$language" \
            "$scratch/$context/src" -ts "$ts"
        cp "$ts" "$outdir/${base}_$language.ts"
    done
}

update KVInsertAuto kvTr kvinsertauto
update KVOfficeSystem kvTrOffice kvofficesystem

# update_host: brings $outdir/kvhost_<language>.ts up to date from a copy of refhost/app/ whose
# translations/ folder holds the files, so that their locations read "../File.cpp".
update_host() {
    dest="$scratch/kvhost/app"
    mkdir -p "$dest/translations"
    (cd "$root/refhost/app" && find . -maxdepth 1 -type f \( -name '*.cpp' -o -name '*.h' \)) |
        while read -r file; do
            cp "$root/refhost/app/$file" "$dest/$file"
        done
    for language in $languages; do
        ts="$dest/translations/kvhost_$language.ts"
        if [ -f "$hosttsdir/kvhost_$language.ts" ]; then
            cp "$hosttsdir/kvhost_$language.ts" "$ts"
        fi
        "$LUPDATE" -silent -extensions cpp,h -locations absolute -target-language "$language" \
            "$dest" -ts "$ts"
        cp "$ts" "$outdir/kvhost_$language.ts"
    done
}

# Without --output the host's files go to their own folder.
if [ "$outdir" = "$tsdir" ]; then
    mkdir -p "$hosttsdir"
    outdir="$hosttsdir"
    update_host
    outdir="$tsdir"
    alldirs="$tsdir $hosttsdir"
else
    update_host
    alldirs="$outdir"
fi

# lupdate marks every new text "unfinished"; list them so that they get translated.
for dir in $alldirs; do
    if grep -l 'type="unfinished"' "$dir"/*.ts >/dev/null 2>&1; then
        echo "Texts still to translate:" >&2
        grep -c 'type="unfinished"' "$dir"/*.ts | grep -v ':0$' >&2
    fi
done
