# shellcheck shell=bash
# Sourced by the packaging tests: start an installed dialcraft away from the
# build tree, wait for its start-up lines, check them, stop it.
#
# The program has no quit command and prints nothing when it starts listening,
# so "started" means: the start-up hook's last line is on standard output.

# Starts PROGRAM with a bare environment: its own HOME and settings folder
# under WORKDIR (the user's stored table is never touched), PATH without the
# build tree, WORKDIR as working directory, plus NAME=VALUE extras.
# Standard output goes to WORKDIR/stdout, standard error to WORKDIR/stderr.
# Sets PROGRAM_PID.
start_program() {
  local program=$1 workdir=$2
  shift 2
  rm -rf "$workdir"
  mkdir -p "$workdir/home/.config" "$workdir/home/.local/share" "$workdir/home/.cache"
  mkdir -m 700 "$workdir/runtime"
  # A clean environment, but for the sanitizers' settings of an instrumented build.
  (cd "$workdir" && exec env -i \
      PATH=/usr/local/bin:/usr/bin:/bin LANG=C.UTF-8 \
      HOME="$workdir/home" XDG_CONFIG_HOME="$workdir/home/.config" \
      XDG_DATA_HOME="$workdir/home/.local/share" XDG_CACHE_HOME="$workdir/home/.cache" \
      XDG_RUNTIME_DIR="$workdir/runtime" \
      ${ASAN_OPTIONS:+ASAN_OPTIONS="$ASAN_OPTIONS"} ${UBSAN_OPTIONS:+UBSAN_OPTIONS="$UBSAN_OPTIONS"} \
      ${LSAN_OPTIONS:+LSAN_OPTIONS="$LSAN_OPTIONS"} \
      "$@" "$program" >"$workdir/stdout" 2>"$workdir/stderr") &
  PROGRAM_PID=$!
}

# Waits up to TIMEOUT seconds (default 30) until the start-up hook has printed
# its last line. Fails when the program ends first or the time runs out.
wait_for_start_lines() {
  local workdir=$1 timeout=${2:-30}
  local deadline=$((SECONDS + timeout))
  until grep -q '^Accessing configuration.settings at index: 26$' "$workdir/stdout"; do
    if ! kill -0 "$PROGRAM_PID" 2>/dev/null; then
      echo "FAIL: the program ended before its start-up lines; standard error:"
      cat "$workdir/stderr"
      return 1
    fi
    if ((SECONDS >= deadline)); then
      echo "FAIL: no start-up lines within ${timeout} s; standard output so far:"
      cat -A "$workdir/stdout"
      return 1
    fi
    sleep 0.1
  done
}

# Terminates the program (SIGTERM, then SIGKILL after 5 s) and reaps it.
# SIGTERM closes the window as the user does: the shut-down lines follow the
# start-up lines, and the exit status is 0 (PROGRAM_STATUS).
# shellcheck disable=SC2034  # PROGRAM_STATUS is read by the scripts that source this one
stop_program() {
  kill -TERM "$PROGRAM_PID" 2>/dev/null || true
  local i
  for i in $(seq 50); do
    kill -0 "$PROGRAM_PID" 2>/dev/null || break
    sleep 0.1
  done
  kill -KILL "$PROGRAM_PID" 2>/dev/null || true
  PROGRAM_STATUS=0
  wait "$PROGRAM_PID" 2>/dev/null || PROGRAM_STATUS=$?
}

# Checks the whole of standard output against the start-up lines: the fixed
# device name 4ACBCC27 selected, the sequencer's sources looked at (how many
# depends on the machine; a connected 4ACBCC27 gives the success lines), then
# the 27 knobs restored from an empty store, and nothing else but, once
# stop_program has ended it, the shut-down lines: the client closed and the
# 27 knobs stored.
check_start_lines() {
  local file=$1
  local -a lines expected=(
    $'set_device_name 4acbcc27 \r'
    $'middle_value b \r'
    'Generated device_name: 4ACBCC27')
  mapfile -t lines <"$file"
  local fail=0 i n=0
  if [[ -s $file && $(tail -c1 "$file" | od -An -c) != *'\n'* ]]; then
    echo "FAIL: the last line is not ended"; fail=1
  fi
  for i in 0 1 2; do
    [[ ${lines[i]-} == "${expected[i]}" ]] || { echo "FAIL: line $((i + 1)) differs"; fail=1; }
  done
  [[ ${lines[3]-} =~ ^MIDIGetNumberOfSources\ [0-9a-f]+\ $'\r'$ ]] || { echo "FAIL: line 4 is no source count"; fail=1; }
  if [[ ${lines[4]-} == $'midi init failed \r' ]]; then
    n=5
  elif [[ ${lines[4]-} =~ ^midi\ init\ success\ ,number\ code\ [0-9a-f]+\ $'\r'$ &&
          ${lines[5]-} =~ ^4ACBCC27.*\ is\ (online|offline)$'\r'$ ]]; then
    n=6
  else
    echo "FAIL: line 5 is neither the failed nor the successful connection"; fail=1; n=5
  fi
  for i in $(seq 0 26); do
    [[ ${lines[n + i]-} == "Accessing configuration.settings at index: $i" ]] ||
      { echo "FAIL: line $((n + i + 1)) is not the restore line of knob $i"; fail=1; }
  done
  if ((${#lines[@]} > n + 27)); then
    [[ ${lines[n + 27]-} == $'midi_exit\r' ]] || { echo "FAIL: line $((n + 28)) is not midi_exit"; fail=1; }
    for i in $(seq 0 26); do
      [[ ${lines[n + 28 + i]-} == "Accessing configuration.settings at index: $i" ]] ||
        { echo "FAIL: line $((n + 29 + i)) is not the store line of knob $i"; fail=1; }
    done
    ((${#lines[@]} == n + 55)) || { echo "FAIL: ${#lines[@]} lines, expected $((n + 55))"; fail=1; }
  else
    ((${#lines[@]} == n + 27)) || { echo "FAIL: ${#lines[@]} lines, expected $((n + 27))"; fail=1; }
  fi
  if ((fail)); then
    echo "standard output (cat -A):"
    cat -A "$file"
    return 1
  fi
}

# Standard error must be empty: QML that fails to load or warns, or a missing
# module would show there.
check_quiet_stderr() {
  local file=$1
  # Qt's offscreen platform (a test platform, never a user's) says once that
  # it ignores window size hints when the window's minimum size settles after
  # it was shown, which a busy machine makes happen; every other line counts.
  if grep -vqx 'This plugin does not support propagateSizeHints()' "$file"; then
    echo "FAIL: standard error is not empty:"
    cat "$file"
    return 1
  fi
}
