#!/usr/bin/env bash
# Runs the window in a real X session (Xvfb) with the AT-SPI accessibility bus,
# and checks its accessibility tree from outside, as a screen reader sees it
# (atspi_tree_check.py). Skipped (exit 77) with the reason when Xvfb, D-Bus,
# the AT-SPI bus or Python's Atspi bindings are missing; under CI=true they
# must be there and a missing one fails the test.
#
# With --closes RUNS, the check closes the window itself (its process id is in
# DIALCRAFT_WINDOW_PID); the window is started RUNS times, and each run must
# end with exit status 0 and nothing from the sanitizers on standard error.
# Usage: atspi_session.sh <window program> <check.py> [--closes RUNS [check arguments...]]
set -euo pipefail

if [ "${1:-}" = --inside ]; then
  # Inside the private session bus: start the accessibility bus, the window,
  # then the check.
  shift
  launcher=$1 window=$2 check=$3
  shift 3
  runs=1 closes=false
  if [ "${1:-}" = --closes ]; then
    closes=true runs=$2
    shift 2
  fi
  "$launcher" --launch-immediately &
  launcher_pid=$!
  for _ in $(seq 50); do
    gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
      --method org.a11y.Bus.GetAddress >/dev/null 2>&1 && break
    sleep 0.1
  done
  # Built with ASan, the program would list at exit what Qt's D-Bus and X11
  # plugins keep until then; this test is after faults, the window tests
  # check leaks. Without the leak check no allocation needs its stack
  # unwound from the debug information: the quick unwinder does.
  if [ "$closes" = true ]; then
    export ASAN_OPTIONS="${ASAN_OPTIONS:-}${ASAN_OPTIONS:+:}detect_leaks=0:fast_unwind_on_malloc=1"
  fi
  status=0
  for run in $(seq "$runs"); do
    touch "$work/started"
    QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 \
      QT_ACCESSIBILITY=1 "$window" >/dev/null 2>"$work/window.err" &
    window_pid=$!
    DIALCRAFT_WINDOW_PID=$window_pid DIALCRAFT_SESSION_RUN=$run /usr/bin/python3 "$check" "$@" || status=$?
    if [ "$closes" = false ] || [ "$status" -ne 0 ]; then
      kill "$window_pid" 2>/dev/null || true
      wait "$window_pid" 2>/dev/null || true
      [ "$status" -eq 0 ] || break
      continue
    fi
    ended=0
    wait "$window_pid" || ended=$?
    if [ "$ended" -ne 0 ] || grep -qE 'Sanitizer|runtime error' "$work/window.err"; then
      echo "run $run: the window ended with exit status $ended after it was closed"
      cat "$work/window.err"
      status=1
    elif ! [ "$XDG_CONFIG_HOME/dialcraft/dialcraft.conf" -nt "$work/started" ]; then
      echo "run $run: the window ended without storing the table"
      status=1
    fi
    [ "$status" -eq 0 ] || break
  done
  kill "$launcher_pid" 2>/dev/null || true
  wait "$launcher_pid" 2>/dev/null || true
  exit "$status"
fi

window=$1 check=$2
shift 2

skip() {
  if [ "${CI:-}" = true ]; then
    echo "atspi session: $1 (required under CI)"
    exit 1
  fi
  echo "atspi session skipped: $1"
  exit 77
}
command -v Xvfb >/dev/null || skip "Xvfb is not installed (package xvfb)"
command -v dbus-run-session >/dev/null || skip "dbus-run-session is not installed (package dbus-daemon)"
command -v gdbus >/dev/null || skip "gdbus is not installed (package libglib2.0-bin)"
launcher=""
for candidate in /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher; do
  [ -x "$candidate" ] && launcher=$candidate && break
done
[ -n "$launcher" ] || skip "at-spi-bus-launcher is not installed (package at-spi2-core)"
/usr/bin/python3 -c 'import gi; gi.require_version("Atspi", "2.0")' 2>/dev/null ||
  skip "Python's AT-SPI bindings are missing (packages python3-gi gir1.2-atspi-2.0)"

# A display of its own: Xvfb picks a free number and writes it to the pipe.
work=$(mktemp -d)
trap 'kill "$xvfb_pid" 2>/dev/null || true; rm -rf "$work"' EXIT
mkfifo "$work/display"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb_pid=$!
read -r -t 20 number <"$work/display" || skip "Xvfb did not start: $(cat "$work/xvfb.log")"
export DISPLAY=":$number"
export XDG_RUNTIME_DIR="$work"
unset QT_QPA_PLATFORM
# The window's settings, table and journal stay in the session's folder.
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share"
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME"
export work
dbus-run-session -- bash "$0" --inside "$launcher" "$window" "$check" "$@"
