#!/usr/bin/env bash
# Runs shellcheck over every shell script of the source tree: each *.sh file
# and each file that starts with a sh or bash #! line (scripts/*, .ci/run), in
# the folders that hold our code. Found anew on every run, so a new script is
# checked without reconfiguring. Options come from the tree's .shellcheckrc.
#
# Usage: shellcheck.sh <source dir>
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=missing_tool.sh
. "$here/missing_tool.sh"

command -v shellcheck >/dev/null || missing_tool shellcheck "shellcheck is not installed" shellcheck
cd "$1" || exit 1

scripts=()
while IFS= read -r -d '' file; do
  if [[ $file == *.sh ]]; then
    scripts+=("$file")
    continue
  fi
  first=''
  IFS= read -r first <"$file" || true
  if [[ $first =~ ^'#!'.*[/[:space:]](ba|da)?sh([[:space:]]|$) ]]; then
    scripts+=("$file")
  fi
done < <(find scripts .ci cmake src tests tools bench -type f -print0 2>/dev/null | sort -z)

if [ ${#scripts[@]} -eq 0 ]; then
  echo "shellcheck: FAILED: no shell scripts found under $PWD"
  exit 1
fi
echo "shellcheck: ${#scripts[@]} scripts: ${scripts[*]}"
shellcheck "${scripts[@]}"
