#!/usr/bin/env bash
# Installs every Debian package the project needs. Quick and quiet when all are present.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config ccache
  qt6-base-dev qt6-base-dev-tools qt6-translations-l10n
  libpcre2-dev libsqlite3-dev libpq-dev postgresql
  libdxflib-dev libpugixml-dev libboost-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth fonts-wqy-microhei fonts-dejavu-core
)

# `--fuzz` adds what the libFuzzer build needs.
if [ "${1:-}" = "--fuzz" ]; then
  PACKAGES+=(clang libclang-rt-14-dev)
fi

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get -o DPkg::Lock::Timeout=300 update -qq
$SUDO apt-get -o DPkg::Lock::Timeout=300 install -y -qq --no-install-recommends "${missing[@]}"
