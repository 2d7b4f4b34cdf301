#pragma once
// The scenarios that drive the MIDI link directly against emulated
// controllers on the VM's kernel. Each returns the process exit status.
#include "test_bed.h"

int one_controller_scenario(const TestBed& bed);
int two_controllers_scenario(const TestBed& bed);
int knob_turn_scenario(const TestBed& bed);
int unplug_scenario(const TestBed& bed);
int no_controller_scenario(const TestBed& bed);
int other_family_scenario(const TestBed& bed);
