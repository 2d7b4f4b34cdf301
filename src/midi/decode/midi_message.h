#pragma once
// One received MIDI message, by meaning rather than by bytes: what the live
// monitor shows and what knob attribution compares. Both the byte decoder
// (byte streams) and a host that hands over parsed events (the ALSA
// sequencer) produce this one type, so attribution never sees the source.
#include <cstdint>
#include <string_view>

namespace dialcraft {

enum class MidiKind : uint8_t {
    // Channel messages: channel 1 to 16.
    note_off,          // number: note, value: velocity
    note_on,           // number: note, value: velocity (0 stays a Note On)
    poly_pressure,     // number: note, value: pressure
    control_change,    // number: controller, value
    program_change,    // number: program
    channel_pressure,  // value: pressure
    pitch_bend,        // value: 0 to 16383, 8192 at rest (LSB first on the wire)
    // System common messages: channel 0.
    time_code,      // value: the quarter-frame byte
    song_position,  // value: 0 to 16383
    song_select,    // number: song
    tune_request,
    system_undefined,  // F4 and F5
    // Real-time messages: channel 0, single bytes.
    clock,
    start,
    continue_playing,
    stop,
    active_sensing,
    reset,
    realtime_undefined,  // F9 and FD
};

struct MidiMessage {
    MidiKind kind = MidiKind::clock;
    uint8_t channel = 0;  // 1 to 16 for channel messages, else 0
    uint8_t number = 0;   // 0 to 127 where the kind has one, else 0
    uint16_t value = 0;   // 0 to 127, or 0 to 16383 for pitch bend and song position

    friend bool operator==(const MidiMessage&, const MidiMessage&) = default;
};

bool is_channel_kind(MidiKind kind);

// "Note On", "Control Change", "Pitch Bend", "Clock" and so on; for the
// monitor's lines and for test failures.
std::string_view midi_kind_name(MidiKind kind);

// The ALSA sequencer gives pitch bend as -8192 to 8191; this is the wire value
// 0 to 16383 (values outside the range are clamped to it).
uint16_t pitch_bend_from_signed(int value);

}  // namespace dialcraft
