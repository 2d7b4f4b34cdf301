// How the knob table compares with what a controller holds.
#include <gtest/gtest.h>

#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_markers.h"

using namespace dialcraft;

namespace {

const HeldSetting cc_2_74{"Control Change", 2, 74, QDateTime::fromSecsSinceEpoch(0, Qt::UTC)};

void set_knob(GlobalState& state, int knob, const QString& type, const QString& channel, const QString& controller)
{
    CreateSetupAreaViewData& record = *state.record(knob);
    record.set_message_type_menu_string(type);
    record.set_message_channel_menu_string(channel);
    record.set_message_controller_number_code_string(controller);
}

}  // namespace

TEST(KnobMarker, NothingHeldIsNeverWritten)
{
    EXPECT_EQ(knob_marker(nullptr, "Control Change", "2", "74"), KnobMarker::never_written);
}

TEST(KnobMarker, TheSameSettingIsWrittenEvenWhenTypedWithLeadingZeros)
{
    EXPECT_EQ(knob_marker(&cc_2_74, "Control Change", "2", "74"), KnobMarker::written);
    EXPECT_EQ(knob_marker(&cc_2_74, "Control Change", "02", "074"), KnobMarker::written);
}

TEST(KnobMarker, AnyOtherValueDiffers)
{
    EXPECT_EQ(knob_marker(&cc_2_74, "Note On", "2", "74"), KnobMarker::differs);
    EXPECT_EQ(knob_marker(&cc_2_74, "Control Change", "3", "74"), KnobMarker::differs);
    EXPECT_EQ(knob_marker(&cc_2_74, "Control Change", "2", "75"), KnobMarker::differs);
    EXPECT_EQ(knob_marker(&cc_2_74, "选择消息类型", "", ""), KnobMarker::differs);
    EXPECT_EQ(knob_marker(&cc_2_74, "Control Change", " 2", "74"), KnobMarker::differs);
}

TEST(LedgerMarkers, CountsKnobsZeroTo26OfTheChosenControllerOnly)
{
    GlobalState state;
    set_knob(state, 0, "Control Change", "2", "74");
    set_knob(state, 1, "Note On", "1", "60");
    set_knob(state, 5, "Bend Change", "16", "127");
    ControllerLedger ledger;
    ledger.controllers["4AC3CC27"][0] = cc_2_74;
    ledger.controllers["4AC3CC27"][1] = cc_2_74;
    ledger.controllers["4AC3CC27"][27] = cc_2_74;  // beyond the window's knobs
    ledger.controllers["4AC1CC27"][5] = {"Bend Change", 16, 127, cc_2_74.written};

    const LedgerMarkers markers = ledger_markers(ledger, "4AC3CC27", state);
    EXPECT_EQ(markers.knobs[0], KnobMarker::written);
    EXPECT_EQ(markers.knobs[1], KnobMarker::differs);
    EXPECT_EQ(markers.knobs[5], KnobMarker::never_written);
    EXPECT_EQ(markers.written, 1);
    EXPECT_EQ(markers.differs, 1);
    EXPECT_EQ(markers.never_written, 25);
    EXPECT_EQ(ledger_summary_text("4AC3CC27", markers), "4AC3CC27: 已写入 1, 不同 1, 未写入 25");
    EXPECT_FALSE(needs_programming(markers.knobs[0]));
    EXPECT_TRUE(needs_programming(markers.knobs[1]));
    EXPECT_TRUE(needs_programming(markers.knobs[5]));

    EXPECT_EQ(ledger_markers(ledger, "4AC1CC27", state).knobs[5], KnobMarker::written);
}
