#!/usr/bin/env bash
# One script for a fresh Debian 12 machine: installs what the project needs, builds it, and then
#   bash setup.sh sample   converts the bundled sample drawing (the default)
#   bash setup.sh test     runs the whole test suite
#   bash setup.sh build    only installs and builds
set -euo pipefail
cd "$(dirname "$0")"
action="${1:-sample}"

packages=(
  build-essential cmake pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev
  rapidjson-dev zlib1g-dev libpng-dev libjpeg-dev libtiff-dev
  libfreeimage-dev libhpdf-dev libcairo2-dev
  libfreetype-dev libfontconfig-dev fonts-liberation2 fonts-dejavu-core
  python3 libxml2-utils
  python3-ezdxf
  librecad-data
  imagemagick
  chromium
)
# Node.js runs the browser checks; a machine that already has it (with its own npm) keeps it.
command -v npm >/dev/null 2>&1 || packages+=(nodejs npm)

install_packages() {
  local missing=()
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -q
  $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
}

build() {
  cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DDM_WERROR=ON >/dev/null
  cmake --build build -j "$(nproc)"
}

# playwright-core for the browser checks (tests/browser), from its lock file; it drives the
# system's chromium and downloads no browser of its own.
install_browser_test_modules() {
  (cd tests/browser && npm ci --no-audit --no-fund >/dev/null)
}

# LibreDWG compiled to WebAssembly (tests/tools/libredwg): the DWG reader's tests compare our
# entity counts with an outside reader's. A test dependency only; the product never loads it.
install_dwg_reference_modules() {
  (cd tests/tools/libredwg && npm ci --no-audit --no-fund >/dev/null)
}

install_packages
install_browser_test_modules
install_dwg_reference_modules
build
case "$action" in
  build) ;;
  sample)
    mkdir -p out
    ./build/dm2020 samples/office.dxf out/office.svg -SVG
    ;;
  test)
    ctest --test-dir build --output-on-failure -j "$(nproc)"
    ;;
  *) echo "usage: bash setup.sh [sample|test|build]" >&2; exit 2 ;;
esac
