#pragma once
// Turns a hung scenario into a failure marker on the console and an exit,
// instead of leaving the VM waiting for its time limit.
#include <string>

void arm_watchdog(const std::string& scenario_id, unsigned seconds);
