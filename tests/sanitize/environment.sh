# shellcheck shell=bash
# Sanitizer settings shared by scripts/sanitize and scripts/fuzz (sourced).
# Every report stops the program: UBSan halts on its first error, ASan and
# TSan do by nature. Leaks are reported except those of Qt's and the system's
# libraries listed in lsan.supp; none of ours is ever suppressed.
sanitize_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:strict_string_checks=1:detect_stack_use_after_return=1
export LSAN_OPTIONS=suppressions=$sanitize_dir/lsan.supp:print_suppressions=0
export TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1
symbolizer=$(command -v llvm-symbolizer || true)
if [ -n "$symbolizer" ]; then
  export ASAN_SYMBOLIZER_PATH=$symbolizer
fi
