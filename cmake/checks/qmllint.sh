#!/usr/bin/env bash
# Runs qmllint over every QML file of the window's module and fails on any
# warning, unused imports and multi-line strings included. qmllint finds our
# own types in the module's build output (its qmldir and qmltypes), so the
# project must be built first.
#
# Usage: qmllint.sh --qmllint=<program> <qml source dir> <import dir>...
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=missing_tool.sh
. "$here/missing_tool.sh"

qmllint=${1#--qmllint=}
qml_dir=$2
shift 2
if [ -z "$qmllint" ] || [ ! -x "$qmllint" ]; then
  missing_tool qmllint "qmllint is not installed" qt6-declarative-dev-tools
fi

imports=()
have_qtqml=false
for dir in "$@"; do
  imports+=(-I "$dir")
  [ -f "$dir/QtQml/qmldir" ] && have_qtqml=true
done
# Without them qmllint knows neither the Qt namespace nor its enums.
$have_qtqml || missing_tool qmllint "the QtQml module's type descriptions are not installed" qml6-module-qtqml

shopt -s nullglob
files=("$qml_dir"/*.qml "$qml_dir"/*/*.qml)
if [ ${#files[@]} -eq 0 ]; then
  echo "qmllint: FAILED: no QML files in $qml_dir"
  exit 1
fi
echo "qmllint: ${#files[@]} files in $qml_dir"
"$qmllint" --bare "${imports[@]}" --unused-imports warning --multiline-strings warning "${files[@]}"
