#!/usr/bin/env bash
# The main job. Until the editor window exists it shows the demo library: creates it
# when absent, lists it, renders each draw set's drawing to a PNG, and plays the editor
# control on the first draw set with a screenshot.
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
for ID in $("$DSE" list "$LIB" | awk -F'\t' 'NR > 1 { print $1 }'); do
  "$DSE" export "$LIB" "$ID" "$OUT/drawset-$ID.lvd" >/dev/null
  "$DSE" lvd render "$OUT/drawset-$ID.lvd" -o "$OUT/drawset-$ID.png" --size 1200x900 --margin 30
  echo "drawset $ID -> $OUT/drawset-$ID.png"
done
# The script frames the corner of the demo's top end joint (draw set 1).
FIRST=1
[ -f "$OUT/drawset-$FIRST.lvd" ] || FIRST=$("$DSE" list "$LIB" | awk -F'\t' 'NR == 2 { print $1 }')
sed "s|docs/editor-control|$OUT/editor-control|" docs/editor-control.script > "$OUT/editor-control.script"
"$DSE" draw "$OUT/drawset-$FIRST.lvd" -s "$OUT/editor-control.script" --settings "$OUT/dse.ini"
echo "editor control -> $OUT/editor-control.png"
"$DSE" show "$LIB" 0
