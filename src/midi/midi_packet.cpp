#include "midi/midi_packet.h"

#include <cstring>

namespace dialcraft {

namespace {
constexpr size_t header_size = offsetof(MidiPacket, data);
}

MidiPacket* midi_packet_list_init(MidiPacketList* list)
{
    list->numPackets = 0;
    return &list->packet[0];
}

MidiPacket* midi_packet_list_add(MidiPacketList* list, size_t list_size, MidiPacket* cur, uint64_t time, size_t length,
                                 const uint8_t* data)
{
    if (length > sizeof cur->data)
        return nullptr;
    MidiPacket* p = list->numPackets == 0 ? &list->packet[0] : midi_packet_next(cur);
    const auto* end = reinterpret_cast<const uint8_t*>(list) + list_size;
    if (reinterpret_cast<const uint8_t*>(p) + header_size + length > end)
        return nullptr;
    p->timeStamp = time;
    p->length = static_cast<uint16_t>(length);
    std::memcpy(p->data, data, length);
    ++list->numPackets;
    return p;
}

const MidiPacket* midi_packet_next(const MidiPacket* p)
{
    // Packets are packed back to back, each aligned to 8 bytes.
    size_t step = (header_size + p->length + 7) & ~size_t{7};
    return reinterpret_cast<const MidiPacket*>(reinterpret_cast<const uint8_t*>(p) + step);
}

MidiPacket* midi_packet_next(MidiPacket* p)
{
    return const_cast<MidiPacket*>(midi_packet_next(static_cast<const MidiPacket*>(p)));
}

}  // namespace dialcraft
