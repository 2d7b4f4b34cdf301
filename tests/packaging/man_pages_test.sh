#!/usr/bin/env bash
# The installed manual pages: each one's NAME line is found by lexgrog (what
# mandb and apropos read), and man formats it without a warning.
# Usage: man_pages_test.sh PREFIX PAGE...
set -euo pipefail
prefix=$1
shift
for tool in lexgrog man; do
  command -v $tool >/dev/null || { echo "FAIL: $tool missing (scripts/bootstrap installs man-db)"; exit 1; }
done
failures=0
for page in "$@"; do
  file=$prefix/share/man/man1/$page.gz
  name=${page%.1}
  if [[ ! -f $file ]]; then
    echo "FAIL: $file is not installed"
    failures=$((failures + 1))
    continue
  fi
  if whatis=$(lexgrog "$file" 2>&1) && [[ $whatis == *": \"$name - "* ]]; then
    echo "ok: lexgrog $page: ${whatis#*: }"
  else
    echo "FAIL: lexgrog $page: $whatis"
    failures=$((failures + 1))
  fi
  warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$file" 2>&1 >/dev/null) || true
  if [[ -z $warnings ]]; then
    echo "ok: man --warnings $page"
  else
    echo "FAIL: man --warnings $page:"
    echo "$warnings"
    failures=$((failures + 1))
  fi
done
((failures == 0)) || exit 1
echo "all manual pages pass"
