#!/usr/bin/env bash
# Checks a built Debian package: its name and fields, the files it holds,
# lintian without errors (warnings are listed), and a Depends line that
# covers what the program needs at run time, found from the program itself:
# the packages of the libraries it links, of the QML modules its window
# loads, and of its CJK font. The unpacked program must start and print its
# start-up lines.
# Usage: deb_checks.sh DEB WORKDIR VERSION
set -euo pipefail
deb=$1 workdir=$2 version=$3
source "$(dirname "$0")/started_program.sh"
fail() { echo "FAIL: $*"; exit 1; }

rm -rf "$workdir"
mkdir -p "$workdir"
[[ $(basename "$deb") == "dialcraft_${version}_$(dpkg --print-architecture).deb" ]] ||
  fail "package named $(basename "$deb")"

field() { dpkg-deb -f "$deb" "$1"; }
[[ $(field Package) == dialcraft ]] || fail "Package: $(field Package)"
[[ $(field Version) == "$version" ]] || fail "Version: $(field Version)"
[[ $(field Section) == sound ]] || fail "Section: $(field Section)"
[[ -n $(field Maintainer) ]] || fail "no Maintainer"
[[ $(field Description | wc -l) -gt 3 ]] || fail "Description has no long text"
depends=$(field Depends)
echo "Depends: $depends"

# The files.
dpkg-deb -c "$deb" | awk '{print $NF}' >"$workdir/contents"
id=io.github.dialcraft.Dialcraft
for f in usr/bin/dialcraft usr/bin/dialcraft-cli usr/bin/dialcraft-virtual-controller "usr/share/applications/$id.desktop" \
         "usr/share/icons/hicolor/scalable/apps/$id.svg" "usr/share/icons/hicolor/48x48/apps/$id.png" \
         "usr/share/icons/hicolor/128x128/apps/$id.png" "usr/share/icons/hicolor/256x256/apps/$id.png" \
         "usr/share/metainfo/$id.metainfo.xml" usr/share/man/man1/dialcraft.1.gz \
         usr/share/man/man1/dialcraft-cli.1.gz usr/share/man/man1/dialcraft-virtual-controller.1.gz \
         usr/share/doc/dialcraft/copyright usr/share/doc/dialcraft/changelog.gz; do
  grep -qx "./$f" "$workdir/contents" || fail "the package lacks /$f"
done

# lintian: errors fail, warnings are shown.
lintian --fail-on error --tag-display-limit 0 "$deb" >"$workdir/lintian.log" 2>&1 ||
  { cat "$workdir/lintian.log"; fail "lintian reports errors"; }
echo "lintian:"
grep -v '^running with root privileges' "$workdir/lintian.log" || echo "  (no tags)"

# A package is in Depends when its name stands there whole, with or
# without a version.
has_dep() { [[ ", $depends," == *", $1,"* || ", $depends," == *", $1 ("* ]]; }
# The package that owns a file; dpkg may know it under /lib or /usr/lib
# (merged /usr), by the symlink's name or by the file's.
owner() {
  local p c
  for p in "$1" "$(readlink -f "$1")"; do
    for c in "$p" "${p#/usr}" "/usr$p"; do
      dpkg -S "$c" 2>/dev/null | head -1 | cut -d: -f1 | grep . && return
    done
  done
  return 0
}
missing=()

# Libraries the unpacked program links directly (its NEEDED entries), found
# where the loader finds them.
dpkg-deb -x "$deb" "$workdir/root"
program=$workdir/root/usr/bin/dialcraft
ldd "$program" >"$workdir/ldd"
needed=$(readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
[[ -n $needed ]] || fail "no NEEDED entries in the program"
for lib in $needed; do
  # "name => path (address)", or for the loader itself "path (address)".
  path=$(awk -v lib="$lib" '$1 == lib && $2 == "=>" {print $3}
                             $1 ~ "/" lib "$" {print $1}' "$workdir/ldd")
  [[ $path == /* ]] || fail "the loader does not find $lib"
  pkg=$(owner "$path")
  [[ -n $pkg ]] || fail "no package owns $path"
  has_dep "$pkg" || missing+=("$pkg (links $lib)")
done

# QML modules the window loads, traced while the unpacked program starts; and
# the modules of the file dialogs, which load only when a dialog opens.
start_program "$program" "$workdir/start" QT_QPA_PLATFORM=offscreen QML_IMPORT_TRACE=1
trap stop_program EXIT
wait_for_start_lines "$workdir/start"
stop_program
trap - EXIT
check_start_lines "$workdir/start/stdout"
qml=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/qt6/qml
modules=$(grep -o "\"$qml/[^\"]*/qmldir\"" "$workdir/start/stderr" | tr -d '"' | sort -u)
[[ -n $modules ]] || fail "no QML module traced"
for qmldir in $modules "$qml/QtQuick/Dialogs/quickimpl/qmldir" "$qml/Qt/labs/folderlistmodel/qmldir"; do
  pkg=$(owner "$qmldir")
  [[ -n $pkg ]] || fail "no package owns $qmldir"
  has_dep "$pkg" || missing+=("$pkg (QML ${qmldir#"$qml"/})")
done

# The face the labels fall back to for Chinese text.
font=$(fc-match -f '%{file}' 'Noto Sans CJK SC')
[[ $(fc-match -f '%{family}' 'Noto Sans CJK SC') == *'Noto Sans CJK SC'* ]] || fail "Noto Sans CJK SC is not installed here"
pkg=$(owner "$font")
has_dep "$pkg" || missing+=("$pkg (font $font)")

((${#missing[@]} == 0)) || fail "Depends lacks: ${missing[*]}"
echo "package $(basename "$deb") as expected"
