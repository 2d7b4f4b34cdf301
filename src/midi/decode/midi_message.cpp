#include "midi/decode/midi_message.h"

namespace dialcraft {

bool is_channel_kind(MidiKind kind)
{
    return kind <= MidiKind::pitch_bend;
}

std::string_view midi_kind_name(MidiKind kind)
{
    switch (kind) {
    case MidiKind::note_off: return "Note Off";
    case MidiKind::note_on: return "Note On";
    case MidiKind::poly_pressure: return "Poly Pressure";
    case MidiKind::control_change: return "Control Change";
    case MidiKind::program_change: return "Program Change";
    case MidiKind::channel_pressure: return "Channel Pressure";
    case MidiKind::pitch_bend: return "Pitch Bend";
    case MidiKind::time_code: return "Time Code";
    case MidiKind::song_position: return "Song Position";
    case MidiKind::song_select: return "Song Select";
    case MidiKind::tune_request: return "Tune Request";
    case MidiKind::system_undefined: return "System Undefined";
    case MidiKind::clock: return "Clock";
    case MidiKind::start: return "Start";
    case MidiKind::continue_playing: return "Continue";
    case MidiKind::stop: return "Stop";
    case MidiKind::active_sensing: return "Active Sensing";
    case MidiKind::reset: return "Reset";
    case MidiKind::realtime_undefined: return "Real-time Undefined";
    }
    return "Unknown";
}

uint16_t pitch_bend_from_signed(int value)
{
    const int wire = value + 8192;
    return static_cast<uint16_t>(wire < 0 ? 0 : wire > 16383 ? 16383 : wire);
}

}  // namespace dialcraft
