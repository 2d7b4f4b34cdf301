#pragma once
// Steps that several scenarios share: plugging an emulated controller and
// waiting for the host to see it, probing the sixteen serials of the family,
// and programming a knob with a check of every byte the controller received.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "emulated_controller.h"
#include "scenario_report.h"
#include "send_clock.h"
#include "test_bed.h"
#include "usb_gadget.h"

// Creates and plugs `gadget` into `udc`, starts `emulator` on its raw MIDI
// device and waits until the host's sequencer shows "<serial> MIDI 1".
bool plug_controller(ScenarioReport& report, UsbGadget& gadget, EmulatedController& emulator, const std::string& udc);

struct FamilyProbe {
    std::array<uint8_t, 16> answers{};
    std::array<std::string, 16> output;  // what each probe printed
};

// Probes the device codes 0x4AC0CC27 to 0x4ACFCC27 in ascending order, each
// with judge_device_connect_state_with_id, capturing what each one prints.
FamilyProbe probe_family();

// Checks that exactly the probes in `online` (middle digits) answered 1 and
// printed "<serial> MIDI 1 is online\r\n", and every other one answered 0
// and printed "midi init failed \r\n".
void check_family_probe(ScenarioReport& report, const FamilyProbe& probe, const std::vector<int>& online);

struct KnobRequest {
    int8_t knob;
    uint8_t type_channel;
    int8_t controller;
    std::vector<std::vector<uint8_t>> expected_messages;  // on the wire, in order
    std::string expected_frame;                           // the emulator's decoded "knob ..." line
};

// Knob 5 as Control Change, channel 2, controller 74, the request most
// scenarios make, and the five messages that program it.
inline const std::vector<std::vector<uint8_t>> knob5_cc_messages = {
    {0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}};
inline const KnobRequest knob5_cc_request{5, 0xB1, 74, knob5_cc_messages,
                                          "knob 5 = Control Change, channel 2, controller 74"};

// Checks that the link printed one send line per message ("clock mc\r\n"
// for F8, "MSG: 91 4a 5 \r\n" for three bytes), in order, and no others.
bool check_send_lines(ScenarioReport& report, const std::string& printed,
                      const std::vector<std::vector<uint8_t>>& messages);

// Waits for `emulator` to decode a frame, then checks that it received exactly
// `messages` and decoded `frame` (for example "knob 5 = Control Change,
// channel 2, controller 74"); reports the gaps between their arrivals.
bool check_programming_received(ScenarioReport& report, const EmulatedController& emulator,
                                const std::vector<std::vector<uint8_t>>& messages, const std::string& frame);

// Checks that `clock` saw one accepted send per message and that the sender
// paused at least 8 ms between them.
void check_sender_pacing(ScenarioReport& report, const SendClock& clock,
                         const std::vector<std::vector<uint8_t>>& messages);

// Calls usb_midi_main for `request` and checks its result 0, the printed
// send lines, the sender's pacing and what the controller received.
void program_knob(ScenarioReport& report, EmulatedController& emulator, const KnobRequest& request);

// Waits briefly and checks that `emulator` received nothing at all.
void check_received_nothing(ScenarioReport& report, const EmulatedController& emulator, const std::string& who);

std::string hex_messages(const std::vector<std::vector<uint8_t>>& messages);
