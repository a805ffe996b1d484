#!/usr/bin/env bash
# Renders the main dialog with the example workbook imported, without and with the symbol panel,
# into docs/images/main-dialog.png and main-dialog-panel.png (or OUT_DIR) under a virtual X
# server:
#     render-main-dialog.sh [BUILD_DIR] [OUT_DIR]
# BUILD_DIR (default: build/) must be configured; the renderer is built there first.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$top/build}
out=${2:-$top/docs/images}

cmake --build "$build" --target kv_render_main_dialog -j2
mkdir -p "$out"
# A fixed screen and the xcb platform, so the pictures look like a desktop session's.
QT_QPA_PLATFORM=xcb xvfb-run --auto-servernum --server-args="-screen 0 1280x1024x24" \
    "$build/tests/maindialog/kv_render_main_dialog" "$out"
