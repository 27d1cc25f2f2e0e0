#!/usr/bin/env bash
# The main job. Until the editor window exists it shows the demo library: creates it
# when absent, lists it, and renders each draw set's drawing to a PNG.
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
"$DSE" show "$LIB" 0
