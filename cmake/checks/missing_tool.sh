# shellcheck shell=bash
# Sourced by the code-check runners: what a check does when its tool is not
# installed. Outside CI it is skipped (exit 77, the checks' SKIP_RETURN_CODE);
# under CI=true it fails, since scripts/bootstrap installs every tool there.
#
# missing_tool <check name> <what is missing> <Debian package>
missing_tool() {
  local check=$1 what=$2 package=$3
  if [ "${CI:-}" = true ]; then
    echo "$check: FAILED: $what (CI=true: the check must run; scripts/bootstrap installs $package)"
    exit 1
  fi
  echo "$check: SKIPPED: $what (scripts/bootstrap installs $package)"
  exit 77
}
