#!/usr/bin/env bash
# Runs the --help of dialcraft-cli and dialcraft-virtual-controller as
# processes and checks that each program does what its help says, and the
# --version of all three programs.
#
#   help_test.sh <dialcraft-cli> <dialcraft-virtual-controller> <dialcraft> <version>
#
# ALSA is pointed at an empty configuration, so no sequencer can be opened
# and no controller plugged into this machine is ever programmed; the
# settings store lives in a temporary home.
set -uo pipefail
cli=$1
vc=$2
window=$3
version=$4

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The sequencer's device is taken as present (DIALCRAFT_SEQ_DEVICE, the
# programs' test hook): the empty configuration makes "cannot open the
# service" on any machine; the missing sequencer is checked on its own below.
export HOME=$work XDG_CONFIG_HOME=$work/config ALSA_CONFIG_PATH=$work/alsa.conf DIALCRAFT_SEQ_DEVICE=/dev/null
: >"$ALSA_CONFIG_PATH"

failures=0
pass() { echo "ok: $1"; }
fail() {
  echo "FAIL: $1"
  echo "  stdout: $(head -c 400 "$work/out")"
  echo "  stderr: $(head -c 400 "$work/err")"
  failures=$((failures + 1))
}
# run <program> <args...>: status in $status, output in $work/out and $work/err.
run() {
  "$@" >"$work/out" 2>"$work/err" </dev/null
  status=$?
}
# check <what> <command...>: passes when the command succeeds.
check() {
  local what=$1
  shift
  if "$@"; then pass "$what"; else fail "$what"; fi
}
lines_in() { wc -l <"$1"; }
expect_status() {
  local want=$1 what=$2
  shift 2
  run "$@"
  if [ "$status" -eq "$want" ]; then pass "$what (exit $want)"; else fail "$what: exit $status, not $want"; fi
}

# The general help: usage, and the same commands as the program accepts.
run "$cli" --help
cp "$work/out" "$work/help"
if [ "$status" -eq 0 ] && [ "$(head -n1 "$work/help")" = "用法(usage): dialcraft-cli COMMAND [ARGUMENTS] [--json] [--verbose]" ] &&
  [ ! -s "$work/err" ]; then pass "dialcraft-cli --help"; else fail "dialcraft-cli --help"; fi
help_commands=$(awk '/^命令\(commands\):/ { on = 1; next } on && /^$/ { exit } on && /^  [a-z]/ { print $1 }' "$work/help" | paste -sd' ')
run "$cli" no-such-command
accepted_commands=$(sed -n 's/.*可用(accepted): //p' "$work/err" | tr -d ',')
if [ "$status" -eq 2 ] && [ -n "$help_commands" ] && [ "$help_commands" = "$accepted_commands" ] &&
  [ "$(wc -l <"$work/err")" -eq 1 ]; then
  pass "the help's commands ($help_commands) are those accepted"
else
  fail "help lists '$help_commands', the program accepts '$accepted_commands'"
fi
for command in $help_commands; do
  run "$cli" "$command" --help
  if [ "$status" -eq 0 ] && head -n1 "$work/out" | grep -q "^用法(usage): dialcraft-cli $command "; then
    pass "$command --help"
  else
    fail "$command --help"
  fi
done

# --json: accepted by the commands the help names, refused by the others.
json_commands=$(sed -n 's/^  --json .*: //p' "$work/help" | tr -d ',')
printf 'Control Change\n2\n74\n' >"$work/knobs.txt"
for command in $help_commands; do
  case $command in
    set) args=(set 5 cc 2 74) ;;
    apply | export | import) args=("$command" "$work/knobs.txt") ;;
    *) args=("$command") ;;
  esac
  case " $json_commands " in
    *" $command "*) run "$cli" "${args[@]}" --json
      if [ "$status" -ne 2 ]; then pass "$command takes --json"; else fail "$command refuses --json"; fi ;;
    *) expect_status 2 "$command refuses --json" "$cli" "${args[@]}" --json ;;
  esac
done

# The exit statuses the help lists.
expect_status 0 "show of a fresh store" "$cli" show
check "show prints a header and knobs 0-26" test "$(lines_in "$work/out")" -eq 28
check "show writes nothing to standard error" test ! -s "$work/err"
expect_status 0 "show --verbose" "$cli" show --verbose
check "--verbose sends the diagnostic lines to standard error" \
  grep -q '^Accessing configuration.settings at index: 26$' "$work/err"
check "standard output carries only results" test "$(grep -c 'Accessing' "$work/out")" -eq 0
printf '                    \n' >"$work/blank.txt"
expect_status 1 "apply of a file with no knob to program (nothing sent)" "$cli" apply "$work/blank.txt"
expect_status 2 "a usage error" "$cli" set 27 cc 2 74
check "nothing on standard output on a usage error" test ! -s "$work/out"
check "one line on standard error on a usage error" test "$(lines_in "$work/err")" -eq 1
expect_status 3 "list without a MIDI service" "$cli" list
check "list prints no controller" test ! -s "$work/out"

# set: the ranges and type names of its help are exactly what it accepts.
run "$cli" set --help
cp "$work/out" "$work/set-help"
for argument in KNOB CHANNEL CONTROLLER; do
  range=$(sed -n "s/^  $argument  *\([0-9]*\)-\([0-9]*\)$/\1 \2/p" "$work/set-help")
  read -r low high <<<"$range"
  if [ -z "${low:-}" ]; then fail "set --help gives no range of $argument"; continue; fi
  for value in "$low" "$high" "$((low - 1))" "$((high + 1))"; do
    case $argument in
      KNOB) args=(set "$value" cc 2 74) ;;
      CHANNEL) args=(set 5 cc "$value" 74) ;;
      CONTROLLER) args=(set 5 cc 2 "$value") ;;
    esac
    if [ "$value" -ge "$low" ] && [ "$value" -le "$high" ]; then
      expect_status 3 "$argument $value is accepted (then no controller)" "$cli" "${args[@]}"
    else
      expect_status 2 "$argument $value is refused" "$cli" "${args[@]}"
    fi
  done
done
types_line=$(sed -n 's/^  TYPE  *//p' "$work/set-help")
short_forms=${types_line##*, or }
mapfile -t types < <(grep -o '"[^"]*"' <<<"$types_line" | tr -d '"'; tr ',' '\n' <<<"$short_forms" | tr -d ' ')
check "set --help names 8 types (${types[*]})" test "${#types[@]}" -eq 8
for type in "${types[@]}"; do
  expect_status 3 "TYPE '$type' is accepted (then no controller)" "$cli" set 5 "$type" 2 74
done
expect_status 2 "TYPE 'System Change' is refused" "$cli" set 5 "System Change" 2 74

# export and import, as their help says.
expect_status 0 "export" "$cli" export "$work/out.txt"
lines=$(sed -n 's/^已导出(exported) \([0-9]*\) 行(lines) -> .*/\1/p' "$work/out")
check "export writes the ${lines:-?} lines it reports" \
  test "$(($(tr -cd '\n' <"$work/out.txt" | wc -c) + 1))" -eq "${lines:-0}"
# Import reads by position: the export just written comes back unchanged.
run "$cli" show --json
cp "$work/out" "$work/before.json"
printf 'Note On\n1\n60\n' >"$work/other.txt"
expect_status 0 "import of another file" "$cli" import "$work/other.txt"
check "import warns about a file shorter than an export" grep -q '警告(warning): 文件只有 3 行' "$work/err"
run "$cli" show --json
check "the imported table is the stored one" \
  grep -q '^\[{"channel":"1","controller":"60","knob":0,"type":"Note On"}' "$work/out"
expect_status 0 "import of the export" "$cli" import "$work/out.txt"
check "import of an export warns of nothing" test ! -s "$work/err"
run "$cli" show --json
check "export then import gives back the same table" cmp -s "$work/out" "$work/before.json"

# The virtual controller.
run "$vc" --help
if [ "$status" -eq 0 ] && [ "$(head -n1 "$work/out")" = "用法(usage): dialcraft-virtual-controller [SERIAL ...]" ] &&
  grep -q 'default 4AC1CC27' "$work/out"; then pass "dialcraft-virtual-controller --help"; else fail "virtual controller --help"; fi
vc_help=$(cat "$work/out")
expect_status 2 "a serial of seven digits is refused" "$vc" 4AC1CC2
check "one line on a bad serial" test "$(lines_in "$work/err")" -eq 1
expect_status 2 "a repeated serial is refused" "$vc" 4AC1CC27 4ac1cc27
if grep -q '1 无法使用 ALSA 音序器' <<<"$vc_help"; then
  expect_status 1 "without a sequencer the virtual controller exits 1" "$vc"
  check "it says why" grep -q '无法打开 ALSA 音序器(cannot open the ALSA sequencer)' "$work/err"
else
  fail "the virtual controller's help lists no exit status 1"
fi

# A missing sequencer is named, with what to do, and has an exit status of
# its own; alsa-lib's own lines do not reach the terminal.
why="ALSA 音序器不可用(the ALSA sequencer is not available) ($work/no-snd/seq: No such file or directory); 加载(load it with) \`sudo modprobe snd-seq\`"
DIALCRAFT_SEQ_DEVICE=$work/no-snd/seq expect_status 4 "list without a sequencer" "$cli" list
check "list names the missing sequencer" test "$(cat "$work/err")" = "dialcraft-cli list: $why"
check "dialcraft-cli --help lists exit status 4" grep -q '4 ALSA 音序器不可用' <(run "$cli" --help; cat "$work/out")
DIALCRAFT_SEQ_DEVICE=$work/no-snd/seq expect_status 1 "the virtual controller without a sequencer" "$vc"
check "the virtual controller names the missing sequencer" \
  test "$(cat "$work/err")" = "dialcraft-virtual-controller: 4AC1CC27: $why"

# --version, alone, of each program: one line on standard output, exit 0;
# the window answers it without a display.
for program in "$cli" "$vc" "$window"; do
  name=$(basename "$program")
  run env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=none "$program" --version
  check "$name --version (exit 0)" test "$status" -eq 0
  check "$name --version prints \"$name $version\"" test "$(cat "$work/out")" = "$name $version"
  check "$name --version writes nothing to standard error" test ! -s "$work/err"
done
check "dialcraft-cli --help names --version" grep -q -- '--version' <(run "$cli" --help; cat "$work/out")

if [ "$failures" -ne 0 ]; then
  echo "$failures check(s) failed"
  exit 1
fi
echo "all checks passed"
