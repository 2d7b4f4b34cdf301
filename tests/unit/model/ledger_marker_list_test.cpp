// The markers the window binds to follow the panels, the model menu and the
// ledger file.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "isolated_settings.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_marker_list.h"
#include "model/ledger_store.h"

using namespace dialcraft;

namespace {

constexpr int written = static_cast<int>(KnobMarker::written);
constexpr int differs = static_cast<int>(KnobMarker::differs);
constexpr int never_written = static_cast<int>(KnobMarker::never_written);

class LedgerMarkerListTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        previous_clock_ = set_ledger_clock([] { return QDateTime::fromSecsSinceEpoch(1'800'000'000, Qt::UTC); });
        ASSERT_TRUE(record_in_ledger("4AC3CC27", 5, "Control Change", 2, 74));
        ASSERT_TRUE(record_in_ledger("4AC3CC27", 6, "Note On", 1, 60));
        set_knob(5, "Control Change", "2", "74");
        set_knob(6, "Note On", "1", "61");
        state.set_machine_type_menu_string("4AC3CC27");
    }
    void TearDown() override { set_ledger_clock(previous_clock_); }

    void set_knob(int knob, const QString& type, const QString& channel, const QString& controller)
    {
        CreateSetupAreaViewData& record = *state.record(knob);
        record.set_message_type_menu_string(type);
        record.set_message_channel_menu_string(channel);
        record.set_message_controller_number_code_string(controller);
    }

    IsolatedSettings settings_;
    LedgerClock previous_clock_;
    GlobalState state;
};

}  // namespace

TEST_F(LedgerMarkerListTest, ShowsTheChosenControllersMarkersAndFollowsThePanels)
{
    LedgerMarkerList list;
    list.setGlobalState(&state);
    EXPECT_EQ(list.serial(), "4AC3CC27");
    EXPECT_EQ(list.markers().size(), 27);
    EXPECT_EQ(list.markers()[5], written);
    EXPECT_EQ(list.markers()[6], differs);
    EXPECT_EQ(list.markers()[0], never_written);
    EXPECT_EQ(list.summaryText(), "4AC3CC27: 已写入 1, 不同 1, 未写入 25");
    EXPECT_TRUE(list.serialHasEntries());
    EXPECT_EQ(list.knobsToProgram({0, 5, 6}), (QList<int>{0, 6}));

    QSignalSpy changed(&list, &LedgerMarkerList::markersChanged);
    state.record(6)->set_message_controller_number_code_string("060");
    EXPECT_GE(changed.count(), 1);
    EXPECT_EQ(list.markers()[6], written);
    EXPECT_EQ(list.summaryText(), "4AC3CC27: 已写入 2, 不同 0, 未写入 25");

    // Another controller in the menu: nothing written there.
    state.set_machine_type_menu_string("4AC1CC27");
    EXPECT_EQ(list.summaryText(), "4AC1CC27: 已写入 0, 不同 0, 未写入 27");
    EXPECT_FALSE(list.serialHasEntries());
    EXPECT_EQ(list.knobsToProgram({5, 6}), (QList<int>{5, 6}));
}

TEST_F(LedgerMarkerListTest, ReloadReadsWhatWasRecordedSince)
{
    LedgerMarkerList list;
    list.setGlobalState(&state);
    set_knob(7, "Bend Change", "16", "127");
    EXPECT_EQ(list.markers()[7], never_written);
    ASSERT_TRUE(record_in_ledger("4AC3CC27", 7, "Bend Change", 16, 127));
    EXPECT_EQ(list.markers()[7], never_written);
    list.reload();
    EXPECT_EQ(list.markers()[7], written);
}

TEST_F(LedgerMarkerListTest, AnnouncesAChangeOnlyWhenAMarkerOrTheSerialChanged)
{
    LedgerMarkerList list;
    list.setGlobalState(&state);
    QSignalSpy changed(&list, &LedgerMarkerList::markersChanged);

    // Knob 0 stays never written whatever it is set to: the panels are not
    // told again (a start's table refresh makes 81 such edits).
    set_knob(0, "Note Off", "3", "9");
    set_knob(1, "Note On", "4", "10");
    EXPECT_EQ(changed.count(), 0);

    state.record(6)->set_message_controller_number_code_string("60");
    EXPECT_EQ(changed.count(), 1);
    state.set_machine_type_menu_string("4AC1CC27");
    EXPECT_EQ(changed.count(), 2);

    // A knob beyond the table recorded for 4AC1CC27: its markers are the
    // same, yet it now has entries, so the window hears of it.
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 30, "Note On", 1, 60));
    EXPECT_FALSE(list.serialHasEntries());
    list.reload();
    EXPECT_EQ(changed.count(), 3);
    EXPECT_TRUE(list.serialHasEntries());
    EXPECT_EQ(list.summaryText(), "4AC1CC27: 已写入 0, 不同 0, 未写入 27");
}
