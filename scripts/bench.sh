#!/usr/bin/env bash
# Runs every benchmark program and keeps the JSON next to the console output.
set -euo pipefail
BUILD=${1:-build-bench}
mkdir -p "$BUILD/bench-results"
for b in "$BUILD"/bench/bench_*; do
  [ -x "$b" ] || continue
  name=$(basename "$b")
  "$b" --benchmark_out="$BUILD/bench-results/$name.json" --benchmark_out_format=json
done
