#pragma once
// The ALSA sequencer hands over MIDI already parsed, as events; this turns one
// into the monitor's MidiMessage without a round trip through bytes, so an
// event source and a byte source reach attribution as the same type.
#include <optional>

#include "midi/decode/midi_message.h"

struct snd_seq_event;

namespace dialcraft {

// The message of a MIDI event; nothing for SysEx (skipped whole, as the byte
// decoder skips it), for 14-bit controller and (N)RPN events, which a raw MIDI
// port never produces unless asked to, and for the sequencer's own notices.
// Fields are cut to their wire widths, as the bytes would carry them.
std::optional<MidiMessage> message_from_sequencer_event(const snd_seq_event& event);

}  // namespace dialcraft
