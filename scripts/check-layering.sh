#!/usr/bin/env bash
# The geometry module stays plain C++: no Qt header may appear under it.
set -euo pipefail
cd "$(dirname "$0")/.."
if grep -rn '#include <Q' src/geometry; then
  echo "error: src/geometry must not include Qt headers" >&2
  exit 1
fi
