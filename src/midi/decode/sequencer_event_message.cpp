#include "midi/decode/sequencer_event_message.h"

#include <alsa/asoundlib.h>

namespace dialcraft {

namespace {

uint8_t seven_bits(unsigned value)
{
    return static_cast<uint8_t>(value & 0x7F);
}

uint8_t channel_of(unsigned char channel)
{
    return static_cast<uint8_t>((channel & 0x0F) + 1);
}

MidiMessage note(MidiKind kind, const snd_seq_ev_note_t& n)
{
    return {kind, channel_of(n.channel), seven_bits(n.note), seven_bits(n.velocity)};
}

MidiMessage system(MidiKind kind)
{
    return {kind, 0, 0, 0};
}

}  // namespace

std::optional<MidiMessage> message_from_sequencer_event(const snd_seq_event& event)
{
    const snd_seq_ev_ctrl_t& c = event.data.control;
    const auto value = static_cast<unsigned>(c.value);
    switch (event.type) {
    case SND_SEQ_EVENT_NOTEOFF: return note(MidiKind::note_off, event.data.note);
    case SND_SEQ_EVENT_NOTEON: return note(MidiKind::note_on, event.data.note);
    case SND_SEQ_EVENT_KEYPRESS: return note(MidiKind::poly_pressure, event.data.note);
    case SND_SEQ_EVENT_CONTROLLER:
        return MidiMessage{MidiKind::control_change, channel_of(c.channel), seven_bits(c.param), seven_bits(value)};
    case SND_SEQ_EVENT_PGMCHANGE:
        return MidiMessage{MidiKind::program_change, channel_of(c.channel), seven_bits(value)};
    case SND_SEQ_EVENT_CHANPRESS:
        return MidiMessage{MidiKind::channel_pressure, channel_of(c.channel), 0, seven_bits(value)};
    case SND_SEQ_EVENT_PITCHBEND:
        return MidiMessage{MidiKind::pitch_bend, channel_of(c.channel), 0, pitch_bend_from_signed(c.value)};
    case SND_SEQ_EVENT_QFRAME: return MidiMessage{MidiKind::time_code, 0, 0, seven_bits(value)};
    case SND_SEQ_EVENT_SONGPOS:
        return MidiMessage{MidiKind::song_position, 0, 0, static_cast<uint16_t>(value & 0x3FFF)};
    case SND_SEQ_EVENT_SONGSEL: return MidiMessage{MidiKind::song_select, 0, seven_bits(value)};
    case SND_SEQ_EVENT_TUNE_REQUEST: return system(MidiKind::tune_request);
    case SND_SEQ_EVENT_CLOCK: return system(MidiKind::clock);
    case SND_SEQ_EVENT_START: return system(MidiKind::start);
    case SND_SEQ_EVENT_CONTINUE: return system(MidiKind::continue_playing);
    case SND_SEQ_EVENT_STOP: return system(MidiKind::stop);
    case SND_SEQ_EVENT_SENSING: return system(MidiKind::active_sensing);
    case SND_SEQ_EVENT_RESET: return system(MidiKind::reset);
    default: return std::nullopt;
    }
}

}  // namespace dialcraft
