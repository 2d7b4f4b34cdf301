#!/usr/bin/env bash
# Builds the package the way a user does: `bash scripts/package` in a fresh
# copy of the source tree (the files git knows, nothing of any build folder),
# a release build with Debian's hardening flags. Then checks the .deb it
# wrote and starts the program unpacked from it.
# Usage: release_deb_test.sh SOURCE_DIR WORKDIR VERSION
set -euo pipefail
source_dir=$1 workdir=$2 version=$3
here=$(dirname "$(readlink -f "$0")")
fail() { echo "FAIL: $*"; exit 1; }

rm -rf "$workdir"
mkdir -p "$workdir/tree"
if git -C "$source_dir" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  # The files git knows (changes not yet committed included), as on disk now.
  (cd "$source_dir" && git ls-files -z --cached --others --exclude-standard |
    while IFS= read -r -d '' f; do if [[ -e $f ]]; then printf '%s\0' "$f"; fi; done |
    xargs -0 cp --parents -t "$workdir/tree")
else
  tar -C "$source_dir" --exclude='./build*' --exclude='./dist' -cf - . | tar -C "$workdir/tree" -xf -
fi
[[ -f $workdir/tree/scripts/package ]] || fail "no scripts/package in the copy"

started=$SECONDS
(cd "$workdir/tree" && bash scripts/package) >"$workdir/package.log" 2>&1 ||
  { tail -40 "$workdir/package.log"; fail "scripts/package failed (log: $workdir/package.log)"; }
echo "scripts/package: $((SECONDS - started)) s"
# Warnings of our own code in the release build: shown, not fatal.
grep -E '^(\.\./)?(src|tools)/.*warning:' "$workdir/package.log" || echo "no warnings of ours in the release build"

debs=("$workdir"/tree/dist/*.deb)
if ((${#debs[@]} != 1)) || [[ ! -f ${debs[0]} ]]; then fail "dist/ holds: $(ls "$workdir/tree/dist" 2>&1)"; fi
bash "$here/deb_checks.sh" "${debs[0]}" "$workdir/checks" "$version"
