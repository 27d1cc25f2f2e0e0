#!/usr/bin/env bash
# The main job: the draw-set editor window on the first draw set of the demo library
# (created when absent). With a display the window is interactive; without one it runs
# under Xvfb, plays a short demonstration and writes a screenshot of the window.
set -euo pipefail
BUILD=${1:-build}
DSE="$BUILD/src/host/dse"
OUT=${DSE_RUN_DIR:-run}
LIB="$OUT/demo-library.db"
mkdir -p "$OUT"
if [ ! -f "$LIB" ]; then
  "$DSE" init "$LIB"
fi
"$DSE" list "$LIB"
FIRST=$("$DSE" list "$LIB" | awk -F'\t' 'NR == 2 { print $1 }')
# The demonstration frames the top end joint (draw set 1) when the library has it.
"$DSE" list "$LIB" | awk -F'\t' 'NR > 1 && $1 == 1 { found = 1 } END { exit !found }' && FIRST=1
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -z "${DSE_HEADLESS:-}" ]; then
  echo "opening the editor on draw set $FIRST of $LIB"
  exec "$DSE" edit "$LIB" "$FIRST" --settings "$OUT/dse.ini"
fi
sed "s|docs/editor-window|$OUT/editor-window|" docs/editor-window.script > "$OUT/editor-window.script"
xvfb-run -a -s "-screen 0 1280x800x24" env QT_QPA_PLATFORM=xcb \
  "$DSE" edit "$LIB" "$FIRST" -s "$OUT/editor-window.script" --settings "$OUT/dse.ini"
echo "editor window -> $OUT/editor-window.png"
