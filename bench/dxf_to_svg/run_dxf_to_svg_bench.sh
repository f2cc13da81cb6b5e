#!/usr/bin/env bash
# DXF to SVG end to end: dm2020 on generated drawings of two sizes (to see that the cost grows
# linearly), next to other converters from Debian on the same files: LibreCAD's console dxf2pdf
# and ezdxf's draw command (SVG through matplotlib). Reports wall seconds and peak memory.
#
#   bash bench/dxf_to_svg/run_dxf_to_svg_bench.sh [build directory = build] [small MB = 10]
#
# The other tools are measuring sticks only; the script installs them when apt-get can.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
small_mb=${2:-10}
large_mb=$((small_mb * 10))
work=$(mktemp -d /tmp/dxf_to_svg_bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

cmake --build "$build" -j2 --target dm2020 make_large_dxf >/dev/null
if ! command -v librecad >/dev/null || ! /usr/bin/python3 -c 'import ezdxf, matplotlib' 2>/dev/null; then
  if [ "$(id -u)" = 0 ] && command -v apt-get >/dev/null; then
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq librecad python3-ezdxf python3-matplotlib >/dev/null || true
  fi
fi

make_large="$(find "$build" -name make_large_dxf -type f -perm -u+x | head -1)"
"$make_large" "$root/samples/office.dxf" "$work/small.dxf" "$small_mb" >/dev/null
"$make_large" "$root/samples/office.dxf" "$work/large.dxf" "$large_mb" >/dev/null

# Runs a command under /usr/bin/time; prints "seconds peak-MB".
measure() {
  local log="$work/time.txt"
  if ! /usr/bin/time -f '%e %M' -o "$log" "$@" >"$work/out.txt" 2>&1; then
    echo "failed"
    return
  fi
  awk '{printf "%.2f s, %.0f MB", $1, $2 / 1024}' "$log"
}

run_dm2020() { mkdir -p "$work/dm"; (cd "$work/dm" && measure "$build/dm2020" "$1" "$work/dm/out.svg" -Q); }
run_librecad() {
  command -v librecad >/dev/null || { echo "not installed"; return; }
  mkdir -p "$work/lc"; cp "$1" "$work/lc/in.dxf"
  QT_QPA_PLATFORM=offscreen measure librecad dxf2pdf "$work/lc/in.dxf"
}
run_ezdxf() {
  /usr/bin/python3 -c 'import ezdxf, matplotlib' 2>/dev/null || { echo "not installed"; return; }
  measure /usr/bin/python3 -m ezdxf draw -o "$work/ezdxf.svg" "$1"
}

for size in small large; do
  file="$work/$size.dxf"
  mb=$(du -m "$file" | cut -f1)
  echo "== $size drawing: $mb MB of DXF"
  echo "dm2020 (SVG):           $(run_dm2020 "$file")"
  echo "LibreCAD dxf2pdf (PDF): $(run_librecad "$file")"
  if [ "$size" = small ]; then
    echo "ezdxf draw (SVG):       $(run_ezdxf "$file")"
  else
    echo "ezdxf draw (SVG):       skipped on the large drawing (minutes per 10 MB)"
  fi
done
