// The byte decoder of the live monitor, on exact streams.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "midi/decode/midi_byte_decoder.h"
#include "midi/decode/midi_data_length.h"
#include "midi_message_printer.h"

using namespace dialcraft;

namespace {

struct Decoded {
    std::vector<MidiMessage> messages;
    MidiDecodeCounts counts;
};

Decoded decode(const std::vector<uint8_t>& bytes)
{
    MidiByteDecoder decoder;
    Decoded out;
    decoder.push_all(bytes, [&out](const MidiMessage& m) { out.messages.push_back(m); });
    out.counts = decoder.counts();
    return out;
}

std::vector<MidiMessage> messages(const std::vector<uint8_t>& bytes)
{
    return decode(bytes).messages;
}

MidiMessage system(MidiKind kind)
{
    return {kind, 0, 0, 0};
}

const MidiMessage clock_tick = system(MidiKind::clock);

}  // namespace

TEST(MidiByteDecoder, EveryChannelMessageKind)
{
    EXPECT_EQ(messages({0x80, 0x3C, 0x40}), (std::vector<MidiMessage>{{MidiKind::note_off, 1, 60, 64}}));
    EXPECT_EQ(messages({0x91, 0x3C, 0x64}), (std::vector<MidiMessage>{{MidiKind::note_on, 2, 60, 100}}));
    EXPECT_EQ(messages({0xA2, 0x3C, 0x10}), (std::vector<MidiMessage>{{MidiKind::poly_pressure, 3, 60, 16}}));
    EXPECT_EQ(messages({0xB1, 0x4A, 0x05}), (std::vector<MidiMessage>{{MidiKind::control_change, 2, 74, 5}}));
    EXPECT_EQ(messages({0xC4, 0x07}), (std::vector<MidiMessage>{{MidiKind::program_change, 5, 7, 0}}));
    EXPECT_EQ(messages({0xD5, 0x7F}), (std::vector<MidiMessage>{{MidiKind::channel_pressure, 6, 0, 127}}));
    EXPECT_EQ(messages({0xEF, 0x00, 0x40}), (std::vector<MidiMessage>{{MidiKind::pitch_bend, 16, 0, 8192}}));
}

TEST(MidiByteDecoder, PitchBendIsFourteenBitsLeastSignificantFirst)
{
    EXPECT_EQ(messages({0xE0, 0x00, 0x00}), (std::vector<MidiMessage>{{MidiKind::pitch_bend, 1, 0, 0}}));
    EXPECT_EQ(messages({0xE0, 0x7F, 0x7F}), (std::vector<MidiMessage>{{MidiKind::pitch_bend, 1, 0, 16383}}));
    EXPECT_EQ(messages({0xE0, 0x01, 0x00}), (std::vector<MidiMessage>{{MidiKind::pitch_bend, 1, 0, 1}}));
    EXPECT_EQ(messages({0xE0, 0x00, 0x01}), (std::vector<MidiMessage>{{MidiKind::pitch_bend, 1, 0, 128}}));
    EXPECT_EQ(messages({0xE3, 0x4A, 0x05}), (std::vector<MidiMessage>{{MidiKind::pitch_bend, 4, 0, 0x05 << 7 | 0x4A}}));
}

TEST(MidiByteDecoder, EveryChannelFromOneToSixteen)
{
    for (int n = 0; n < 16; ++n) {
        const std::vector<MidiMessage> got = messages({static_cast<uint8_t>(0xB0 | n), 0x4A, 0x05});
        ASSERT_EQ(got.size(), 1u);
        EXPECT_EQ(got[0].channel, n + 1);
    }
}

TEST(MidiByteDecoder, TheProgrammingFrameIsFiveMessages)
{
    EXPECT_EQ(messages({0xF8, 0x91, 0x4A, 0x05, 0x81, 0x4A, 0x05, 0xB1, 0x4A, 0x05, 0xF8}),
              (std::vector<MidiMessage>{clock_tick,
                                        {MidiKind::note_on, 2, 74, 5},
                                        {MidiKind::note_off, 2, 74, 5},
                                        {MidiKind::control_change, 2, 74, 5},
                                        clock_tick}));
}

TEST(MidiByteDecoder, RunningStatusRepeatsTheLastChannelStatus)
{
    const Decoded got = decode({0xB1, 0x4A, 0x40, 0x4A, 0x41, 0x4B, 0x00});
    EXPECT_EQ(got.messages, (std::vector<MidiMessage>{{MidiKind::control_change, 2, 74, 64},
                                                      {MidiKind::control_change, 2, 74, 65},
                                                      {MidiKind::control_change, 2, 75, 0}}));
    EXPECT_EQ(got.counts, MidiDecodeCounts{});
}

TEST(MidiByteDecoder, RunningStatusWithOneDataByte)
{
    EXPECT_EQ(messages({0xC0, 0x01, 0x02, 0xD1, 0x10, 0x20}),
              (std::vector<MidiMessage>{{MidiKind::program_change, 1, 1, 0},
                                        {MidiKind::program_change, 1, 2, 0},
                                        {MidiKind::channel_pressure, 2, 0, 16},
                                        {MidiKind::channel_pressure, 2, 0, 32}}));
}

TEST(MidiByteDecoder, RunningStatusAfterABendGivesBends)
{
    EXPECT_EQ(messages({0xE1, 0x00, 0x40, 0x7F, 0x7F}),
              (std::vector<MidiMessage>{{MidiKind::pitch_bend, 2, 0, 8192}, {MidiKind::pitch_bend, 2, 0, 16383}}));
}

TEST(MidiByteDecoder, ClockBetweenDataBytesComesFirstAndLeavesTheMessageWhole)
{
    EXPECT_EQ(messages({0x91, 0x4A, 0xF8, 0x05}),
              (std::vector<MidiMessage>{clock_tick, {MidiKind::note_on, 2, 74, 5}}));
    EXPECT_EQ(messages({0x91, 0xF8, 0x4A, 0xF8, 0x05}),
              (std::vector<MidiMessage>{clock_tick, clock_tick, {MidiKind::note_on, 2, 74, 5}}));
}

TEST(MidiByteDecoder, RealTimeKeepsRunningStatus)
{
    EXPECT_EQ(messages({0xB0, 0x01, 0x02, 0xFE, 0x03, 0xFA, 0x04}),
              (std::vector<MidiMessage>{{MidiKind::control_change, 1, 1, 2},
                                        system(MidiKind::active_sensing),
                                        system(MidiKind::start),
                                        {MidiKind::control_change, 1, 3, 4}}));
}

TEST(MidiByteDecoder, EveryRealTimeByte)
{
    EXPECT_EQ(messages({0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF}),
              (std::vector<MidiMessage>{clock_tick, system(MidiKind::realtime_undefined), system(MidiKind::start),
                                        system(MidiKind::continue_playing), system(MidiKind::stop),
                                        system(MidiKind::realtime_undefined), system(MidiKind::active_sensing),
                                        system(MidiKind::reset)}));
}

TEST(MidiByteDecoder, SysexIsSkippedWhole)
{
    const Decoded got = decode({0xF0, 0x7E, 0x01, 0x06, 0x01, 0xF7, 0xB0, 0x07, 0x64});
    EXPECT_EQ(got.messages, (std::vector<MidiMessage>{{MidiKind::control_change, 1, 7, 100}}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{0, 0, 1}));
}

TEST(MidiByteDecoder, RealTimeInsideSysexIsDeliveredAndTheBlockStillSkipped)
{
    const Decoded got = decode({0xF0, 0x7E, 0xF8, 0x01, 0xFE, 0xF7});
    EXPECT_EQ(got.messages, (std::vector<MidiMessage>{clock_tick, system(MidiKind::active_sensing)}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{0, 0, 1}));
}

TEST(MidiByteDecoder, AStatusByteEndsAnUnterminatedSysexAndStarts)
{
    const Decoded got = decode({0xF0, 0x01, 0x02, 0x90, 0x3C, 0x7F});
    EXPECT_EQ(got.messages, (std::vector<MidiMessage>{{MidiKind::note_on, 1, 60, 127}}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{0, 0, 1}));
}

TEST(MidiByteDecoder, SysexCancelsRunningStatus)
{
    const Decoded got = decode({0xB0, 0x01, 0x02, 0xF0, 0x7D, 0xF7, 0x03, 0x04});
    EXPECT_EQ(got.messages, (std::vector<MidiMessage>{{MidiKind::control_change, 1, 1, 2}}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{2, 0, 1}));
}

TEST(MidiByteDecoder, LoneDataBytesAreCountedAndDropped)
{
    const Decoded got = decode({0x4A, 0x05, 0x00, 0x7F});
    EXPECT_TRUE(got.messages.empty());
    EXPECT_EQ(got.counts, (MidiDecodeCounts{4, 0, 0}));
}

TEST(MidiByteDecoder, ALoneEndOfSysexIsStray)
{
    const Decoded got = decode({0xF7, 0xB0, 0x01, 0x02, 0xF7, 0x03, 0x04});
    EXPECT_EQ(got.messages, (std::vector<MidiMessage>{{MidiKind::control_change, 1, 1, 2}}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{4, 0, 0}));
}

TEST(MidiByteDecoder, AStatusByteCutsAMessageShort)
{
    const Decoded got = decode({0x90, 0x3C, 0xB0, 0x07, 0x64, 0x80, 0x90, 0x3C, 0x00});
    EXPECT_EQ(got.messages,
              (std::vector<MidiMessage>{{MidiKind::control_change, 1, 7, 100}, {MidiKind::note_on, 1, 60, 0}}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{0, 2, 0}));
}

TEST(MidiByteDecoder, SystemCommonMessages)
{
    EXPECT_EQ(messages({0xF1, 0x35, 0xF2, 0x10, 0x02, 0xF3, 0x05, 0xF6, 0xF4, 0xF5}),
              (std::vector<MidiMessage>{{MidiKind::time_code, 0, 0, 0x35},
                                        {MidiKind::song_position, 0, 0, 0x02 << 7 | 0x10},
                                        {MidiKind::song_select, 0, 5, 0},
                                        system(MidiKind::tune_request),
                                        system(MidiKind::system_undefined),
                                        system(MidiKind::system_undefined)}));
}

TEST(MidiByteDecoder, SystemCommonCancelsRunningStatus)
{
    const Decoded got = decode({0x90, 0x3C, 0x7F, 0xF6, 0x3C, 0x00});
    EXPECT_EQ(got.messages,
              (std::vector<MidiMessage>{{MidiKind::note_on, 1, 60, 127}, system(MidiKind::tune_request)}));
    EXPECT_EQ(got.counts, (MidiDecodeCounts{2, 0, 0}));
}

TEST(MidiByteDecoder, AMessageSplitAcrossPushesIsKept)
{
    MidiByteDecoder decoder;
    EXPECT_FALSE(decoder.push(0xB1));
    EXPECT_FALSE(decoder.push(0x4A));
    EXPECT_EQ(decoder.push(0x05), (MidiMessage{MidiKind::control_change, 2, 74, 5}));
    EXPECT_FALSE(decoder.push(0x06));
    EXPECT_EQ(decoder.push(0x07), (MidiMessage{MidiKind::control_change, 2, 6, 7}));
}

TEST(MidiDataLength, EveryStatusByte)
{
    for (int s = 0x80; s <= 0xFF; ++s) {
        const auto status = static_cast<uint8_t>(s);
        const uint8_t high = status & 0xF0;
        uint8_t expected = 0;
        if (high == 0xC0 || high == 0xD0 || status == 0xF1 || status == 0xF3)
            expected = 1;
        else if (high != 0xF0 || status == 0xF2)
            expected = 2;
        EXPECT_EQ(midi_data_length(status), expected) << s;
    }
}

TEST(MidiKindName, NamesEveryKind)
{
    EXPECT_EQ(midi_kind_name(MidiKind::note_on), "Note On");
    EXPECT_EQ(midi_kind_name(MidiKind::control_change), "Control Change");
    EXPECT_EQ(midi_kind_name(MidiKind::pitch_bend), "Pitch Bend");
    EXPECT_EQ(midi_kind_name(MidiKind::clock), "Clock");
    EXPECT_TRUE(is_channel_kind(MidiKind::pitch_bend));
    EXPECT_FALSE(is_channel_kind(MidiKind::time_code));
}

TEST(PitchBendFromSigned, SequencerValuesToWireValues)
{
    EXPECT_EQ(pitch_bend_from_signed(-8192), 0);
    EXPECT_EQ(pitch_bend_from_signed(0), 8192);
    EXPECT_EQ(pitch_bend_from_signed(8191), 16383);
    EXPECT_EQ(pitch_bend_from_signed(-9000), 0);
    EXPECT_EQ(pitch_bend_from_signed(9000), 16383);
}
