#pragma once
// Whether dialcraft-cli monitor ends when standard input ends (a pipe or a
// terminal). On by default; tests that run the command in-process, whose
// standard input is whatever the test runner left, turn it off.
namespace dialcraft {

void set_monitor_watches_input(bool watch);

}  // namespace dialcraft
