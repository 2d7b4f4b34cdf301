# shellcheck shell=bash
# Sourced by scripts/test, scripts/sanitize and scripts/fuzz: their builds link
# with lld when it is installed (scripts/bootstrap installs it), dozens of
# test programs each in a fraction of GNU ld's time. scripts/package keeps
# the distribution's linker, as a user's build does.
# Read by the scripts that source this file.
# shellcheck disable=SC2034
linker_option=()
if command -v ld.lld >/dev/null; then
  linker_option=(-DDIALCRAFT_LLD=ON)
fi
