// Matching a received message with the knob settings of one controller.
#include <gtest/gtest.h>

#include <vector>

#include "midi/decode/knob_match.h"
#include "midi_message_printer.h"

using namespace dialcraft;

TEST(KnobKindForTypeNibble, TheFourProgrammableTypes)
{
    EXPECT_EQ(knob_kind_for_type_nibble(0x8), MidiKind::note_off);
    EXPECT_EQ(knob_kind_for_type_nibble(0x9), MidiKind::note_on);
    EXPECT_EQ(knob_kind_for_type_nibble(0xB), MidiKind::control_change);
    EXPECT_EQ(knob_kind_for_type_nibble(0xE), MidiKind::pitch_bend);
    EXPECT_EQ(knob_kind_for_type_nibble(0xF), std::nullopt);
    EXPECT_EQ(knob_kind_for_type_nibble(0xA), std::nullopt);
}

TEST(KnobSendsMatch, TypeChannelAndNumberMustAgree)
{
    const KnobSends cc{5, MidiKind::control_change, 2, 74};
    EXPECT_TRUE(knob_sends(cc, {MidiKind::control_change, 2, 74, 0}));
    EXPECT_TRUE(knob_sends(cc, {MidiKind::control_change, 2, 74, 127}));
    EXPECT_FALSE(knob_sends(cc, {MidiKind::control_change, 3, 74, 0}));
    EXPECT_FALSE(knob_sends(cc, {MidiKind::control_change, 2, 75, 0}));
    EXPECT_FALSE(knob_sends(cc, {MidiKind::note_on, 2, 74, 0}));
    EXPECT_FALSE(knob_sends(cc, {MidiKind::poly_pressure, 2, 74, 0}));
}

TEST(KnobSendsMatch, NoteOnOfVelocityZeroIsNoNoteOff)
{
    const KnobSends off{1, MidiKind::note_off, 1, 60};
    const KnobSends on{2, MidiKind::note_on, 1, 60};
    EXPECT_FALSE(knob_sends(off, {MidiKind::note_on, 1, 60, 0}));
    EXPECT_TRUE(knob_sends(on, {MidiKind::note_on, 1, 60, 0}));
    EXPECT_TRUE(knob_sends(off, {MidiKind::note_off, 1, 60, 64}));
}

TEST(KnobSendsMatch, BendMatchesAnyPitchBendOnItsChannel)
{
    const KnobSends bend{12, MidiKind::pitch_bend, 16, 127};
    EXPECT_TRUE(knob_sends(bend, {MidiKind::pitch_bend, 16, 0, 0}));
    EXPECT_TRUE(knob_sends(bend, {MidiKind::pitch_bend, 16, 0, 16383}));
    EXPECT_FALSE(knob_sends(bend, {MidiKind::pitch_bend, 15, 0, 8192}));
    EXPECT_FALSE(knob_sends(bend, {MidiKind::control_change, 16, 127, 0}));
}

TEST(KnobSendsMatch, SystemMessagesMatchNoKnob)
{
    const KnobSends cc{0, MidiKind::control_change, 1, 0};
    EXPECT_FALSE(knob_sends(cc, {MidiKind::clock, 0, 0, 0}));
    EXPECT_FALSE(knob_sends(cc, {MidiKind::song_select, 0, 0, 0}));
}

TEST(KnobMatcher, TwoKnobsWithOneSettingBothMatch)
{
    const KnobMatcher matcher({{3, MidiKind::control_change, 2, 74},
                               {5, MidiKind::control_change, 2, 74},
                               {6, MidiKind::control_change, 2, 75}});
    EXPECT_EQ(matcher.matched_knobs({MidiKind::control_change, 2, 74, 9}), (std::vector<int>{3, 5}));
    EXPECT_EQ(matcher.matched_knobs({MidiKind::control_change, 2, 75, 9}), (std::vector<int>{6}));
}

TEST(KnobMatcher, AMessageMatchingNothingIsUnmatched)
{
    const KnobMatcher matcher({{3, MidiKind::control_change, 2, 74}});
    EXPECT_TRUE(matcher.matched_knobs({MidiKind::control_change, 1, 74, 9}).empty());
    EXPECT_TRUE(KnobMatcher().matched_knobs({MidiKind::control_change, 2, 74, 9}).empty());
}

TEST(KnobMatcher, TheOutputVectorIsClearedFirst)
{
    const KnobMatcher matcher({{3, MidiKind::note_on, 1, 60}});
    std::vector<int> knobs{99, 98};
    matcher.matched_knobs({MidiKind::note_on, 1, 60, 1}, knobs);
    EXPECT_EQ(knobs, (std::vector<int>{3}));
    matcher.matched_knobs({MidiKind::note_on, 1, 61, 1}, knobs);
    EXPECT_TRUE(knobs.empty());
}
