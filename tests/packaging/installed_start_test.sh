#!/usr/bin/env bash
# Starts the installed program offscreen, from the install prefix, with a bare
# environment and a private home: it loads its window (the start-up hook runs
# when the window appears) and prints exactly the start-up lines, with nothing
# on standard error. Then terminates it.
# Usage: installed_start_test.sh PREFIX WORKDIR
set -euo pipefail
prefix=$1 workdir=$2
source "$(dirname "$0")/started_program.sh"

start_program "$prefix/bin/dialcraft" "$workdir" QT_QPA_PLATFORM=offscreen
trap stop_program EXIT
wait_for_start_lines "$workdir"
sleep 0.5  # anything printed after the start-up lines would show now
stop_program
trap - EXIT
check_start_lines "$workdir/stdout"
((PROGRAM_STATUS == 0)) || { echo "FAIL: exit status $PROGRAM_STATUS after SIGTERM"; exit 1; }
check_quiet_stderr "$workdir/stderr"
echo "start-up lines as expected"
