#!/usr/bin/env bash
# Installs the build tree into a fresh prefix with `cmake --install` and checks
# that exactly the expected files land there. The other packaging tests use
# this prefix.
# Usage: install_tree_test.sh BUILD_DIR PREFIX PROGRAM... -- MANPAGE...
set -euo pipefail
build=$1 prefix=$2
shift 2
programs=() man_pages=()
while (($#)) && [[ $1 != -- ]]; do programs+=("$1"); shift; done
shift
man_pages=("$@")

rm -rf "$prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null

id=io.github.dialcraft.Dialcraft
expected=(
  "share/applications/$id.desktop"
  "share/icons/hicolor/scalable/apps/$id.svg"
  "share/icons/hicolor/48x48/apps/$id.png"
  "share/icons/hicolor/128x128/apps/$id.png"
  "share/icons/hicolor/256x256/apps/$id.png"
  "share/metainfo/$id.metainfo.xml"
  share/doc/dialcraft/copyright
  share/doc/dialcraft/changelog.gz)
for p in "${programs[@]}"; do expected+=("bin/$p"); done
for m in "${man_pages[@]}"; do expected+=("share/man/man${m##*.}/$m.gz"); done

diff <(printf '%s\n' "${expected[@]}" | sort) <(cd "$prefix" && find . -type f -printf '%P\n' | sort) ||
  { echo "FAIL: installed files differ (< expected, > installed)"; exit 1; }
for p in "${programs[@]}"; do
  [[ -x $prefix/bin/$p ]] || { echo "FAIL: bin/$p is not executable"; exit 1; }
done

# The icon theme's sizes are what their folders say.
for size in 48 128 256; do
  dims=$(od -An -tu1 -j16 -N8 "$prefix/share/icons/hicolor/${size}x${size}/apps/$id.png" |
         awk '{print $3 * 256 + $4 "x" $7 * 256 + $8}')
  [[ $dims == "${size}x${size}" ]] || { echo "FAIL: the ${size}x${size} icon is $dims"; exit 1; }
done
echo "installed into $prefix: ${#expected[@]} files"
