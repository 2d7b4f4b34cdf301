// Knob settings of a controller for attribution: the ledger's, else the table's.
#include <gtest/gtest.h>

#include <vector>

#include "model/global_state.h"
#include "model/knob_attribution.h"
#include "model/knob_record.h"

using namespace dialcraft;

namespace {

const QDateTime epoch = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);

void set_knob(GlobalState& state, int knob, const QString& type, const QString& channel, const QString& controller)
{
    CreateSetupAreaViewData& record = *state.record(knob);
    record.set_message_type_menu_string(type);
    record.set_message_channel_menu_string(channel);
    record.set_message_controller_number_code_string(controller);
}

const MidiMessage cc_2_74{MidiKind::control_change, 2, 74, 64};

}  // namespace

TEST(KnobSendsFromText, TheFourTypeNames)
{
    EXPECT_EQ(knob_sends_from_text(0, "Note On", "1", "60"), (KnobSends{0, MidiKind::note_on, 1, 60}));
    EXPECT_EQ(knob_sends_from_text(1, "Note Off", "16", "0"), (KnobSends{1, MidiKind::note_off, 16, 0}));
    EXPECT_EQ(knob_sends_from_text(2, "Control Change", "02", "074"), (KnobSends{2, MidiKind::control_change, 2, 74}));
    EXPECT_EQ(knob_sends_from_text(3, "Bend Change", "3", "127"), (KnobSends{3, MidiKind::pitch_bend, 3, 127}));
}

TEST(KnobSendsFromText, WhatWouldNotPassTheCheckSendsNothing)
{
    EXPECT_EQ(knob_sends_from_text(0, "System Change", "1", "60"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "选择消息类型", "1", "60"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "control change", "1", "60"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "Note On", "0", "60"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "Note On", "17", "60"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "Note On", "1", "128"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "Note On", "1", "-1"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "Note On", "", "60"), std::nullopt);
    EXPECT_EQ(knob_sends_from_text(0, "Note On", " 1", "60"), std::nullopt);
}

TEST(KnobAttribution, TwoTableKnobsWithOneSettingBothMatch)
{
    GlobalState state;
    set_knob(state, 3, "Control Change", "2", "74");
    set_knob(state, 5, "Control Change", "2", "74");
    set_knob(state, 6, "Control Change", "2", "75");
    const KnobMatcher matcher = knob_attribution("4AC3CC27", ControllerLedger{}, &state);
    EXPECT_EQ(matcher.matched_knobs(cc_2_74), (std::vector<int>{3, 5}));
    EXPECT_TRUE(matcher.matched_knobs({MidiKind::control_change, 2, 76, 0}).empty());
}

TEST(KnobAttribution, TheLedgerIsPreferredOverTheTableForThatSerial)
{
    GlobalState state;
    set_knob(state, 5, "Control Change", "2", "74");
    set_knob(state, 6, "Note On", "1", "60");
    ControllerLedger ledger;
    ledger.controllers["4AC3CC27"][5] = {"Note On", 1, 60, epoch};
    ledger.controllers["4AC1CC27"][6] = {"Control Change", 2, 74, epoch};

    const KnobMatcher matcher = knob_attribution("4AC3CC27", ledger, &state);
    // Knob 5 holds Note On 1/60 on 4AC3CC27 whatever the table says; knob 6
    // has no ledger entry for this serial, so the table decides.
    EXPECT_TRUE(matcher.matched_knobs(cc_2_74).empty());
    EXPECT_EQ(matcher.matched_knobs({MidiKind::note_on, 1, 60, 100}), (std::vector<int>{5, 6}));

    const KnobMatcher other = knob_attribution("4AC1CC27", ledger, &state);
    EXPECT_EQ(other.matched_knobs(cc_2_74), (std::vector<int>{5, 6}));
}

TEST(KnobAttribution, LedgerKnobsBeyondTheTableCountWithoutATable)
{
    ControllerLedger ledger;
    ledger.controllers["4AC3CC27"][27] = {"Bend Change", 16, 0, epoch};
    ledger.controllers["4AC3CC27"][2] = {"Bend Change", 16, 5, epoch};
    const KnobMatcher matcher = knob_attribution("4AC3CC27", ledger, nullptr);
    EXPECT_EQ(matcher.matched_knobs({MidiKind::pitch_bend, 16, 0, 8192}), (std::vector<int>{2, 27}));
    EXPECT_TRUE(knob_attribution("4AC4CC27", ledger, nullptr).knobs().empty());
}

TEST(KnobAttribution, AFreshTableMatchesNothing)
{
    GlobalState state;
    EXPECT_TRUE(knob_attribution("4AC3CC27", ControllerLedger{}, &state).knobs().empty());
}

TEST(KnobAttribution, AControllerOutsideTheFamilyGetsNoKnobs)
{
    GlobalState state;
    set_knob(state, 5, "Control Change", "2", "74");
    ControllerLedger ledger;
    ledger.controllers["4AD3CC27"][5] = {"Control Change", 2, 74, epoch};
    EXPECT_TRUE(knob_attribution("4AD3CC27", ledger, &state).knobs().empty());
    EXPECT_TRUE(knob_attribution("4ac3cc27", ledger, &state).knobs().empty());
    EXPECT_EQ(knob_attribution("4ACFCC27", ledger, &state).matched_knobs(cc_2_74), (std::vector<int>{5}));
}
