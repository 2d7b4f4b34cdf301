// The emulated controller's byte parsing and frame decoding, checked on the
// host: the test bed's assertions about what a controller received rest on them.
#include <gtest/gtest.h>

#include <vector>

#include "controller_emulator/knob_programming_decoder.h"
#include "controller_emulator/midi_stream_parser.h"

using namespace dialcraft;

namespace {

std::vector<MidiMessage> parse_all(const std::vector<uint8_t>& bytes)
{
    MidiStreamParser parser;
    std::vector<MidiMessage> out;
    for (uint8_t b : bytes)
        if (auto m = parser.push(b))
            out.push_back(*m);
    return out;
}

std::vector<KnobSetting> decode_all(const std::vector<MidiMessage>& messages)
{
    KnobProgrammingDecoder decoder;
    std::vector<KnobSetting> out;
    for (const auto& m : messages)
        if (auto s = decoder.push(m))
            out.push_back(*s);
    return out;
}

}  // namespace

TEST(MidiStreamParser, CutsTheProgrammingFrameIntoItsFiveMessages)
{
    auto messages = parse_all({0xF8, 0x91, 0x4A, 0x05, 0x81, 0x4A, 0x05, 0xB1, 0x4A, 0x05, 0xF8});
    std::vector<MidiMessage> expected{{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}};
    EXPECT_EQ(messages, expected);
}

TEST(MidiStreamParser, RunningStatusRepeatsTheLastChannelStatus)
{
    auto messages = parse_all({0xB0, 0x4A, 0x40, 0x4A, 0x41});
    std::vector<MidiMessage> expected{{0xB0, 0x4A, 0x40}, {0xB0, 0x4A, 0x41}};
    EXPECT_EQ(messages, expected);
}

TEST(MidiStreamParser, RealTimeByteInsideAMessageLeavesItWhole)
{
    auto messages = parse_all({0x91, 0x4A, 0xF8, 0x05});
    std::vector<MidiMessage> expected{{0xF8}, {0x91, 0x4A, 0x05}};
    EXPECT_EQ(messages, expected);
}

TEST(MidiStreamParser, StrayDataBytesAreDropped)
{
    EXPECT_TRUE(parse_all({0x4A, 0x05}).empty());
}

TEST(MidiStreamParser, ProgramChangeHasOneDataByteAndSysexRunsToF7)
{
    auto messages = parse_all({0xC2, 0x07, 0xF0, 0x7E, 0x01, 0xF7});
    std::vector<MidiMessage> expected{{0xC2, 0x07}, {0xF0, 0x7E, 0x01, 0xF7}};
    EXPECT_EQ(messages, expected);
}

TEST(KnobProgrammingDecoder, DecodesControlChangeOnChannelTwo)
{
    auto settings = decode_all({{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}});
    ASSERT_EQ(settings.size(), 1u);
    EXPECT_EQ(settings[0], (KnobSetting{5, 0xB, 2, 74}));
    EXPECT_EQ(knob_type_name(settings[0].type_nibble), "Control Change");
}

TEST(KnobProgrammingDecoder, DecodesBendChangeOnChannelSixteen)
{
    auto settings = decode_all({{0xF8}, {0x9F, 0x7F, 0x0C}, {0x8F, 0x7F, 0x0C}, {0xEF, 0x7F, 0x0C}, {0xF8}});
    ASSERT_EQ(settings.size(), 1u);
    EXPECT_EQ(settings[0], (KnobSetting{12, 0xE, 16, 127}));
}

TEST(KnobProgrammingDecoder, TypeFFrameCarriesAClockAsFourthMessage)
{
    auto settings = decode_all({{0xF8}, {0x90, 0x00, 0x00}, {0x80, 0x00, 0x00}, {0xF8}, {0xF8}});
    ASSERT_EQ(settings.size(), 1u);
    EXPECT_EQ(settings[0], (KnobSetting{0, 0xF, 1, 0}));
    EXPECT_EQ(knob_type_name(0xF), "System Change");
}

TEST(KnobProgrammingDecoder, MismatchedNoteOffAbandonsTheFrame)
{
    auto settings = decode_all({{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4B, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}});
    EXPECT_TRUE(settings.empty());
}

TEST(KnobProgrammingDecoder, FrameWithoutLeadingClockIsIgnored)
{
    auto settings = decode_all({{0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}});
    EXPECT_TRUE(settings.empty());
}

TEST(KnobProgrammingDecoder, AClockAfterAnAbandonedFrameStartsANewOne)
{
    auto settings = decode_all(
        {{0xF8}, {0x91, 0x4A, 0x05}, {0xF8}, {0x92, 0x10, 0x01}, {0x82, 0x10, 0x01}, {0x92, 0x10, 0x01}, {0xF8}});
    ASSERT_EQ(settings.size(), 1u);
    EXPECT_EQ(settings[0], (KnobSetting{1, 0x9, 3, 16}));
}

TEST(KnobProgrammingDecoder, FourthMessageOnAnotherChannelAbandonsTheFrame)
{
    auto settings = decode_all({{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB2, 0x4A, 0x05}, {0xF8}});
    EXPECT_TRUE(settings.empty());
}
