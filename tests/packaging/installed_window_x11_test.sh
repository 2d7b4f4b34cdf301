#!/usr/bin/env bash
# Starts the installed program on a virtual X server (Xvfb) and reads its
# window's properties the way a desktop does: the class in WM_CLASS is the
# StartupWMClass of the installed desktop entry, so the window is matched to
# the entry, and _NET_WM_ICON carries the program's own icon in its three
# sizes. Then terminates it.
# Usage: installed_window_x11_test.sh PREFIX WORKDIR
set -euo pipefail
prefix=$1 workdir=$2
source "$(dirname "$0")/started_program.sh"
for tool in Xvfb xprop xwininfo; do
  command -v $tool >/dev/null || { echo "FAIL: $tool missing (scripts/bootstrap installs xvfb and x11-utils)"; exit 1; }
done
entry=$prefix/share/applications/io.github.dialcraft.Dialcraft.desktop
wm_class=$(sed -n 's/^StartupWMClass=//p' "$entry")

mkdir -p "$workdir"
rm -f "$workdir/display"
Xvfb -displayfd 3 -nolisten tcp -screen 0 1600x900x24 3>"$workdir/display" 2>"$workdir/xvfb.log" &
xvfb=$!
cleanup() { stop_program 2>/dev/null || true; kill "$xvfb" 2>/dev/null || true; wait "$xvfb" 2>/dev/null || true; }
trap cleanup EXIT
for _ in $(seq 100); do [[ -s $workdir/display ]] && break; sleep 0.1; done
display=:$(cat "$workdir/display")

# start_program clears the work folder; the display number is already read.
start_program "$prefix/bin/dialcraft" "$workdir/run" DISPLAY="$display" QT_QPA_PLATFORM=xcb
wait_for_start_lines "$workdir/run"
check_start_lines "$workdir/run/stdout"

# The program's top-level window: a child of the root that carries its pid
# and a WM_CLASS (Qt's helper windows carry neither). Qt creates and destroys
# helper windows while it starts, so a window listed a moment ago may be gone
# when xprop asks for it (BadWindow): such a window is skipped, and the list
# is read again until the program's window is there.
find_window() {
  local w props
  for w in $(DISPLAY=$display xwininfo -root -children 2>/dev/null | awk '/^ +0x/ {print $1}'); do
    props=$(DISPLAY=$display xprop -id "$w" _NET_WM_PID WM_CLASS 2>/dev/null) || continue
    if [[ $props == *"_NET_WM_PID(CARDINAL) = $PROGRAM_PID"* && $props == *'WM_CLASS(STRING)'* ]]; then
      echo "$w"
      return 0
    fi
  done
  return 1
}
window=
for _ in $(seq 100); do
  window=$(find_window) && break
  sleep 0.1
done
[[ -n $window ]] || { echo "FAIL: no window of process $PROGRAM_PID"; exit 1; }

class=$(DISPLAY=$display xprop -id "$window" WM_CLASS)
[[ $class == "WM_CLASS(STRING) = \"dialcraft\", \"$wm_class\"" ]] ||
  { echo "FAIL: $class; the desktop entry says StartupWMClass=$wm_class"; exit 1; }

# _NET_WM_ICON is a list of images, each: width, height, width*height ARGB
# pixels. List the sizes and count the pixels that are not transparent.
# (xprop reads at most 250000 bytes of a property unless told otherwise.)
DISPLAY=$display xprop -id "$window" -len 4000000 -notype 32c _NET_WM_ICON >"$workdir/icon"
icons=$(sed 's/^_NET_WM_ICON = //; s/, /\n/g' "$workdir/icon" | awk '
  NR == 1 && !/^[0-9]+$/ { print "none"; exit }
  left == 0 { if (w == "") { w = $1; next } h = $1; left = w * h; opaque = 0; next }
  { if ($1 >= 16777216) opaque++; if (--left == 0) { printf "%dx%d:%s ", w, h, (opaque > 0 ? "drawn" : "blank"); w = "" } }')
[[ $icons == "48x48:drawn 128x128:drawn 256x256:drawn " ]] ||
  { echo "FAIL: window icons: ${icons:-none}"; head -c 300 "$workdir/icon"; echo; exit 1; }

stop_program
check_quiet_stderr "$workdir/run/stderr"
echo "window $window: $class, icons $icons"
