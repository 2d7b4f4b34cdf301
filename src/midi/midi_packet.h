#pragma once
// A list of timestamped MIDI packets laid out in one caller-supplied buffer,
// the shape in which the MIDI service hands data to the link and back.
#include <cstddef>
#include <cstdint>

namespace dialcraft {

struct MidiPacket {
    uint64_t timeStamp;  // 0: deliver at once
    uint16_t length;
    uint8_t data[256];
};

struct MidiPacketList {
    uint32_t numPackets;
    MidiPacket packet[1];
};

// Starts an empty list and returns where the first packet goes.
MidiPacket* midi_packet_list_init(MidiPacketList* list);
// Appends one packet after `cur`; returns the new packet, or nullptr when it
// would not fit in `list_size` bytes or `length` exceeds a packet.
MidiPacket* midi_packet_list_add(MidiPacketList* list, size_t list_size, MidiPacket* cur, uint64_t time, size_t length,
                                 const uint8_t* data);
// The packet after `p` in its list.
const MidiPacket* midi_packet_next(const MidiPacket* p);
MidiPacket* midi_packet_next(MidiPacket* p);

}  // namespace dialcraft
