// The monitor's byte decoder on arbitrary streams. Properties:
// - split: the stream fed in two parts, cut at any point (every point for
//   short inputs), decodes to the same messages and counts as fed whole;
// - chunks: fed in pieces whose sizes the input picks, the same again;
// - ranges: channel messages carry channel 1 to 16, the rest channel 0;
//   numbers stay within 0 to 127, values within 0 to 127 or 0 to 16383;
// - real time: one message per byte F8 to FF, whatever surrounds it;
// - round trip: the messages, written back as bytes with a full status each,
//   decode to the same messages with nothing counted.
// The first byte of the input picks the chunk sizes; the rest is the stream.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "fuzz_check.h"
#include "midi/decode/midi_byte_decoder.h"

using namespace dialcraft;

namespace {

struct Decoded {
    std::vector<MidiMessage> messages;
    MidiDecodeCounts counts;

    bool operator==(const Decoded&) const = default;
};

Decoded decode_parts(std::span<const uint8_t> stream, size_t cut)
{
    MidiByteDecoder decoder;
    Decoded out;
    const auto keep = [&out](const MidiMessage& m) { out.messages.push_back(m); };
    decoder.push_all(stream.first(cut), keep);
    decoder.push_all(stream.subspan(cut), keep);
    out.counts = decoder.counts();
    return out;
}

Decoded decode_chunks(std::span<const uint8_t> stream, uint8_t pattern)
{
    MidiByteDecoder decoder;
    Decoded out;
    size_t at = 0;
    for (unsigned step = 0; at < stream.size(); ++step) {
        // Chunk sizes 1 to 8 from the pattern's bits, three bits at a time.
        const size_t size = std::min<size_t>(((pattern >> (step % 6)) & 7) + 1, stream.size() - at);
        for (uint8_t byte : stream.subspan(at, size))
            if (std::optional<MidiMessage> m = decoder.push(byte))
                out.messages.push_back(*m);
        at += size;
    }
    out.counts = decoder.counts();
    return out;
}

bool in_range(const MidiMessage& m)
{
    const bool channel_ok = is_channel_kind(m.kind) ? m.channel >= 1 && m.channel <= 16 : m.channel == 0;
    const bool wide = m.kind == MidiKind::pitch_bend || m.kind == MidiKind::song_position;
    return channel_ok && m.number <= 127 && m.value <= (wide ? 16383 : 127);
}

bool is_realtime(MidiKind kind)
{
    return kind >= MidiKind::clock;
}

// Written back as the wire has it, each with its own status byte.
void encode(const MidiMessage& m, std::vector<uint8_t>& out)
{
    const auto channel = static_cast<uint8_t>(m.channel - 1);
    const auto lsb = static_cast<uint8_t>(m.value & 0x7F);
    const auto msb = static_cast<uint8_t>(m.value >> 7);
    const auto value = static_cast<uint8_t>(m.value);
    switch (m.kind) {
    case MidiKind::note_off: out.insert(out.end(), {static_cast<uint8_t>(0x80 | channel), m.number, value}); break;
    case MidiKind::note_on: out.insert(out.end(), {static_cast<uint8_t>(0x90 | channel), m.number, value}); break;
    case MidiKind::poly_pressure: out.insert(out.end(), {static_cast<uint8_t>(0xA0 | channel), m.number, value}); break;
    case MidiKind::control_change:
        out.insert(out.end(), {static_cast<uint8_t>(0xB0 | channel), m.number, value});
        break;
    case MidiKind::program_change: out.insert(out.end(), {static_cast<uint8_t>(0xC0 | channel), m.number}); break;
    case MidiKind::channel_pressure: out.insert(out.end(), {static_cast<uint8_t>(0xD0 | channel), value}); break;
    case MidiKind::pitch_bend: out.insert(out.end(), {static_cast<uint8_t>(0xE0 | channel), lsb, msb}); break;
    case MidiKind::time_code: out.insert(out.end(), {0xF1, value}); break;
    case MidiKind::song_position: out.insert(out.end(), {0xF2, lsb, msb}); break;
    case MidiKind::song_select: out.insert(out.end(), {0xF3, m.number}); break;
    case MidiKind::tune_request: out.push_back(0xF6); break;
    case MidiKind::system_undefined: out.push_back(0xF4); break;
    case MidiKind::clock: out.push_back(0xF8); break;
    case MidiKind::start: out.push_back(0xFA); break;
    case MidiKind::continue_playing: out.push_back(0xFB); break;
    case MidiKind::stop: out.push_back(0xFC); break;
    case MidiKind::active_sensing: out.push_back(0xFE); break;
    case MidiKind::reset: out.push_back(0xFF); break;
    case MidiKind::realtime_undefined: out.push_back(0xF9); break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const uint8_t pattern = data[0];
    const std::span<const uint8_t> stream(data + 1, size - 1);

    const Decoded whole = decode_parts(stream, stream.size());
    if (stream.size() <= 64) {
        for (size_t cut = 0; cut < stream.size(); ++cut)
            fuzz_require(decode_parts(stream, cut) == whole, "split: a cut changes the decoding");
    } else {
        fuzz_require(decode_parts(stream, pattern * stream.size() / 256) == whole, "split: a cut changes the decoding");
    }
    fuzz_require(decode_chunks(stream, pattern) == whole, "chunks: feeding in pieces changes the decoding");

    size_t realtime_bytes = 0;
    for (uint8_t byte : stream)
        realtime_bytes += byte >= 0xF8 ? 1 : 0;
    size_t realtime_messages = 0;
    std::vector<uint8_t> written;
    for (const MidiMessage& m : whole.messages) {
        fuzz_require(in_range(m), "ranges: a field out of its range");
        realtime_messages += is_realtime(m.kind) ? 1 : 0;
        encode(m, written);
    }
    fuzz_require(realtime_messages == realtime_bytes, "real time: not one message per byte F8 to FF");

    const Decoded again = decode_parts(written, written.size());
    fuzz_require(again.messages == whole.messages, "round trip: the written messages decode differently");
    fuzz_require(again.counts == MidiDecodeCounts{}, "round trip: the written messages count something");
    return 0;
}
