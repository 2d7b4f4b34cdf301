# shellcheck shell=bash
# Sourced by scripts/test: runs one stage of the test command with its output
# in build-logs/<name>.log, prints one line with its time, and on failure
# ends the run with the end of the log and the failing tests named last.

STAGE_LOGS=${STAGE_LOGS:-build-logs}
mkdir -p "$STAGE_LOGS"

# stage NAME COMMAND...
stage() {
  local name=$1 log=$STAGE_LOGS/$1.log started=$SECONDS status=0
  shift
  printf '%-11s ' "$name"
  "$@" >"$log" 2>&1 || status=$?
  if ((status == 0)); then
    printf 'ok      %4d s\n' $((SECONDS - started))
    return 0
  fi
  printf 'FAILED  %4d s (exit %d)\n' $((SECONDS - started)) "$status"
  echo "---- the last lines of $log ----"
  tail -n 60 "$log"
  echo "---- $name failed; the whole output is in $log ----"
  # ctest's own summary, once per ctest run that failed.
  if grep -q '^The following tests FAILED:' "$log"; then
    echo "failing tests:"
    sed -n '/^The following tests FAILED:/,/^Errors while running CTest/p' "$log" |
      grep -E '^[[:space:]]+[0-9]+ - ' | sed 's/^[[:space:]]*/  /'
  fi
  exit "$status"
}
