#pragma once
// Scenarios of the ALSA host with other sequencer clients about: many of
// them, a controller replaced by another at the same card number and client
// id, a client that renames itself, the pacing benchmark against a minimal
// alsa-lib sender, and the change watch. Each returns the process exit
// status.
#include "test_bed.h"

int crowd_scenario(const TestBed& bed);
int replug_other_serial_scenario(const TestBed& bed);
int renamed_client_scenario(const TestBed& bed);
int client_count_benchmark(const TestBed& bed);
int watch_changes_scenario(const TestBed& bed);
