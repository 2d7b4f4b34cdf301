#!/usr/bin/env bash
# Checks that every C++ file (*.h, *.cpp) under src, tests, bench and tools is
# laid out as the tree's .clang-format says. The style is tuned for
# clang-format 14 (Debian 12); other versions lay some constructs out
# differently, so only version 14 is used.
#
# Usage: clang_format.sh <source dir>
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=missing_tool.sh
. "$here/missing_tool.sh"

tool=''
for candidate in clang-format-14 clang-format; do
  if command -v "$candidate" >/dev/null &&
    [[ $("$candidate" --version) =~ version\ 14\. ]]; then
    tool=$candidate
    break
  fi
done
[ -n "$tool" ] || missing_tool clang_format "clang-format 14 is not installed" clang-format
cd "$1" || exit 1
if [ ! -f .clang-format ]; then
  echo "clang_format: FAILED: no .clang-format in $PWD"
  exit 1
fi

files=()
while IFS= read -r -d '' file; do
  files+=("$file")
done < <(find src tests bench tools -type f \( -name '*.h' -o -name '*.cpp' \) -print0 2>/dev/null | sort -z)
if [ ${#files[@]} -eq 0 ]; then
  echo "clang_format: FAILED: no C++ files found under $PWD"
  exit 1
fi

report=$("$tool" --style=file --dry-run --Werror "${files[@]}" 2>&1)
status=$?
if [ $status -eq 0 ]; then
  echo "clang_format: ${#files[@]} files match .clang-format"
  exit 0
fi
printf '%s\n' "$report"
unformatted=$(printf '%s\n' "$report" | sed -n 's/^\([^:]*\):[0-9]*:[0-9]*: error: code should be clang-formatted.*/\1/p' | sort -u)
echo "clang_format: $(printf '%s\n' "$unformatted" | grep -c .) of ${#files[@]} files differ from .clang-format:"
printf '%s\n' "$unformatted" | sed 's/^/  /'
echo "clang_format: fix with: $tool -i <file>..."
exit 1
