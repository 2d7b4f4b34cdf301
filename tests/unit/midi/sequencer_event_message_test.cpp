// Sequencer events as monitor messages, checked against the byte decoder: ALSA
// writes each event as bytes and the two paths must give one message.
#include <alsa/asoundlib.h>
#include <gtest/gtest.h>

#include <vector>

#include "midi/decode/midi_byte_decoder.h"
#include "midi/decode/sequencer_event_message.h"
#include "midi_message_printer.h"

using namespace dialcraft;

namespace {

snd_seq_event_t event_of_type(snd_seq_event_type_t type)
{
    snd_seq_event_t ev{};
    ev.type = type;
    return ev;
}

snd_seq_event_t control(snd_seq_event_type_t type, unsigned char channel, unsigned param, int value)
{
    snd_seq_event_t ev = event_of_type(type);
    ev.data.control.channel = channel;
    ev.data.control.param = param;
    ev.data.control.value = value;
    return ev;
}

snd_seq_event_t note(snd_seq_event_type_t type, unsigned char channel, unsigned char key, unsigned char velocity)
{
    snd_seq_event_t ev = event_of_type(type);
    ev.data.note.channel = channel;
    ev.data.note.note = key;
    ev.data.note.velocity = velocity;
    return ev;
}

// What the byte decoder makes of ALSA's own bytes for the event.
std::vector<MidiMessage> through_bytes(const snd_seq_event_t& ev)
{
    snd_midi_event_t* coder = nullptr;
    if (snd_midi_event_new(64, &coder) < 0)
        return {};
    unsigned char bytes[64];
    const long length = snd_midi_event_decode(coder, bytes, sizeof bytes, &ev);
    snd_midi_event_free(coder);
    std::vector<MidiMessage> out;
    MidiByteDecoder decoder;
    if (length > 0)
        decoder.push_all(std::span<const uint8_t>(bytes, static_cast<size_t>(length)),
                         [&out](const MidiMessage& m) { out.push_back(m); });
    return out;
}

}  // namespace

TEST(MessageFromSequencerEvent, ChannelEvents)
{
    EXPECT_EQ(message_from_sequencer_event(note(SND_SEQ_EVENT_NOTEON, 1, 74, 5)),
              (MidiMessage{MidiKind::note_on, 2, 74, 5}));
    EXPECT_EQ(message_from_sequencer_event(note(SND_SEQ_EVENT_NOTEOFF, 15, 0, 64)),
              (MidiMessage{MidiKind::note_off, 16, 0, 64}));
    EXPECT_EQ(message_from_sequencer_event(note(SND_SEQ_EVENT_KEYPRESS, 0, 60, 9)),
              (MidiMessage{MidiKind::poly_pressure, 1, 60, 9}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_CONTROLLER, 1, 74, 64)),
              (MidiMessage{MidiKind::control_change, 2, 74, 64}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_PGMCHANGE, 4, 0, 7)),
              (MidiMessage{MidiKind::program_change, 5, 7, 0}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_CHANPRESS, 5, 0, 127)),
              (MidiMessage{MidiKind::channel_pressure, 6, 0, 127}));
}

TEST(MessageFromSequencerEvent, PitchBendIsSignedInTheSequencer)
{
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_PITCHBEND, 15, 0, -8192)),
              (MidiMessage{MidiKind::pitch_bend, 16, 0, 0}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_PITCHBEND, 15, 0, 0)),
              (MidiMessage{MidiKind::pitch_bend, 16, 0, 8192}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_PITCHBEND, 15, 0, 8191)),
              (MidiMessage{MidiKind::pitch_bend, 16, 0, 16383}));
}

TEST(MessageFromSequencerEvent, SystemEvents)
{
    EXPECT_EQ(message_from_sequencer_event(event_of_type(SND_SEQ_EVENT_CLOCK)), (MidiMessage{MidiKind::clock}));
    EXPECT_EQ(message_from_sequencer_event(event_of_type(SND_SEQ_EVENT_SENSING)),
              (MidiMessage{MidiKind::active_sensing}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_SONGPOS, 0, 0, 0x110)),
              (MidiMessage{MidiKind::song_position, 0, 0, 0x110}));
    EXPECT_EQ(message_from_sequencer_event(control(SND_SEQ_EVENT_SONGSEL, 0, 0, 3)),
              (MidiMessage{MidiKind::song_select, 0, 3, 0}));
}

TEST(MessageFromSequencerEvent, SysexAndNoticesGiveNothing)
{
    EXPECT_EQ(message_from_sequencer_event(event_of_type(SND_SEQ_EVENT_SYSEX)), std::nullopt);
    EXPECT_EQ(message_from_sequencer_event(event_of_type(SND_SEQ_EVENT_PORT_SUBSCRIBED)), std::nullopt);
    EXPECT_EQ(message_from_sequencer_event(event_of_type(SND_SEQ_EVENT_CLIENT_START)), std::nullopt);
}

TEST(MessageFromSequencerEvent, AgreesWithTheByteDecoderOnAlsasOwnBytes)
{
    const snd_seq_event_t events[] = {
        note(SND_SEQ_EVENT_NOTEON, 1, 74, 5),
        note(SND_SEQ_EVENT_NOTEOFF, 1, 74, 5),
        note(SND_SEQ_EVENT_KEYPRESS, 3, 60, 9),
        control(SND_SEQ_EVENT_CONTROLLER, 1, 74, 5),
        control(SND_SEQ_EVENT_PGMCHANGE, 9, 0, 100),
        control(SND_SEQ_EVENT_CHANPRESS, 10, 0, 33),
        control(SND_SEQ_EVENT_PITCHBEND, 11, 0, -8192),
        control(SND_SEQ_EVENT_PITCHBEND, 11, 0, 1234),
        control(SND_SEQ_EVENT_QFRAME, 0, 0, 0x35),
        control(SND_SEQ_EVENT_SONGPOS, 0, 0, 0x1234),
        control(SND_SEQ_EVENT_SONGSEL, 0, 0, 5),
        event_of_type(SND_SEQ_EVENT_TUNE_REQUEST),
        event_of_type(SND_SEQ_EVENT_CLOCK),
        event_of_type(SND_SEQ_EVENT_START),
        event_of_type(SND_SEQ_EVENT_CONTINUE),
        event_of_type(SND_SEQ_EVENT_STOP),
        event_of_type(SND_SEQ_EVENT_SENSING),
        event_of_type(SND_SEQ_EVENT_RESET),
    };
    for (const snd_seq_event_t& ev : events) {
        const std::optional<MidiMessage> direct = message_from_sequencer_event(ev);
        ASSERT_TRUE(direct) << int(ev.type);
        EXPECT_EQ(through_bytes(ev), std::vector<MidiMessage>{*direct}) << int(ev.type);
    }
}
