#pragma once
// The MIDI device link: plain functions over module-level buffers that name the
// target controller, open the MIDI client, connect the controller's endpoints
// and send it short messages, among them the knob programming sequence.
// Every function prints its diagnostic lines to standard output.
#include <cstdint>

#include "midi/host_selection.h"

namespace dialcraft {

// Device identity: the target name and the numbers derived from it.
extern char device_name[24];
extern uint16_t VID_val;
extern uint16_t PID_val;
extern uint32_t VID_PID_val;
extern uint8_t realtime_connect_state_flag;

// Client, ports and scratch buffers of the connection.
extern MidiObjectRef client;
extern MidiObjectRef gOutPort;
extern MidiObjectRef inPort;
extern MidiObjectRef gDest;
extern char jname[64];
extern char name[64];
extern char manuf[64];
extern char model[64];
extern char offline_flag[64];
extern uint8_t midiout_databuffer[64];

constexpr uint32_t midi_no_match = 0xFFFFFFFF;

// Device identity and name matching.
uint32_t set_device_name(uint32_t code);
void set_device_name_with_hexcode(uint32_t code);
uint8_t judge_device_connect_state_with_id(uint32_t code);
void set_usb_id();
uint8_t CharToHex(char c);

// Client and endpoint connection.
MidiStatus midi_init();
MidiStatus midi_exit();
void MyReadProc(const MidiPacketList* list, void* read_proc_ref, void* src_conn_ref);
uint32_t midi_source_connect();
uint32_t midi_get_destination();

// Message transmission and the knob programming sequence.
uint8_t usb_midi_main(int8_t knob, int8_t type_channel, int8_t controller_a, int8_t controller_b);
uint8_t key_code_value_set(int8_t knob, int8_t type_channel, int8_t controller_a, int8_t controller_b);
uint8_t send_midi_out_data(uint8_t status, uint8_t channel, uint8_t data1, uint8_t data2);
uint8_t midi_device_name_judge();
uint8_t midiOutShortMsg(uint8_t status, uint32_t word);
uint8_t core_midi_send_msg(uint8_t status, uint8_t data1, uint8_t data2);

}  // namespace dialcraft
