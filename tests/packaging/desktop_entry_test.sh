#!/usr/bin/env bash
# The installed desktop entry passes desktop-file-validate without any
# message, and names an icon and a program that are installed.
# Usage: desktop_entry_test.sh PREFIX
set -euo pipefail
prefix=$1
entry=$prefix/share/applications/io.github.dialcraft.Dialcraft.desktop

out=$(desktop-file-validate "$entry" 2>&1) || { echo "FAIL: desktop-file-validate:"; echo "$out"; exit 1; }
[[ -z $out ]] || { echo "FAIL: desktop-file-validate reports:"; echo "$out"; exit 1; }

key() { sed -n "s/^$1=//p" "$entry"; }
icon=$(key Icon) exec_=$(key Exec)
[[ -f $prefix/share/icons/hicolor/scalable/apps/$icon.svg ]] || { echo "FAIL: no installed icon '$icon'"; exit 1; }
[[ -x $prefix/bin/${exec_%% *} ]] || { echo "FAIL: Exec names '${exec_%% *}', which is not installed"; exit 1; }
for k in Comment 'Comment\[zh_CN\]' Keywords StartupWMClass; do
  [[ -n $(key "$k") ]] || { echo "FAIL: no $k"; exit 1; }
done
for c in AudioVideo Audio Midi; do
  [[ ";$(key Categories)" == *";$c;"* ]] || { echo "FAIL: Categories lack $c"; exit 1; }
done
echo "desktop entry valid"
