#!/usr/bin/env bash
# The main job. Until the editor window exists it shows the command line.
set -euo pipefail
BUILD=${1:-build}
"$BUILD/src/host/dse" --help
