// The set action that keeps the ledger: only a programming whose five
// messages the MIDI service all accepted is recorded, for the controller the
// messages went to.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>

#include "actions/recorded_set_action.h"
#include "console_capture.h"
#include "isolated_settings.h"
#include "midi/midi_link.h"
#include "midi/sim/sim_midi_host.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_store.h"

using namespace dialcraft;

namespace {

// The action and the link print their diagnostic lines; they are not looked at here.
void quietly(const std::function<void()>& f)
{
    ConsoleCapture capture;
    f();
    (void)capture.finish();
}

// A service that accepts only the first `accepted_sends` messages.
class PartialHost : public SimMidiHost {
public:
    int accepted_sends = INT_MAX;
    MidiStatus send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length) override
    {
        const MidiStatus status = SimMidiHost::send(port, destination, bytes, length);
        return sends_++ < accepted_sends ? status : -1;
    }

private:
    int sends_ = 0;
};

class RecordedSetActionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        set_midi_host(&sim);
        std::memset(device_name, 0, sizeof device_name);
        realtime_connect_state_flag = 0;
        quietly([] { midi_init(); });
        previous_clock_ = set_ledger_clock([] { return QDateTime::fromSecsSinceEpoch(1'800'000'000, Qt::UTC); });
        previous_sink_ = set_ledger_notice_sink([this](std::string_view line) { notices_.emplace_back(line); });
        CreateSetupAreaViewData& knob = *state.record(5);
        knob.set_message_type_menu_string("Control Change");
        knob.set_message_channel_menu_string("02");
        knob.set_message_controller_number_code_string("74");
    }
    void TearDown() override
    {
        quietly([] { midi_exit(); });
        set_midi_host(nullptr);
        set_ledger_clock(previous_clock_);
        set_ledger_notice_sink(previous_sink_);
    }

    void plug(const std::string& serial)
    {
        sim.add_device(serial, "Maker", serial);
        sim.add_source(serial + " MIDI 1");
        sim.add_destination(serial + " MIDI 1");
    }

    RecordedSetAction press(int knob = 5)
    {
        RecordedSetAction outcome;
        quietly([&] { outcome = setup_button_action_recorded(*state.record(knob), state); });
        return outcome;
    }

    IsolatedSettings settings_;
    PartialHost sim;
    GlobalState state;
    LedgerClock previous_clock_;
    LedgerNoticeSink previous_sink_;
    std::vector<std::string> notices_;
};

}  // namespace

TEST_F(RecordedSetActionTest, AFullyAcceptedProgrammingIsRecordedForItsController)
{
    plug("4AC3CC27");
    const RecordedSetAction outcome = press();
    EXPECT_EQ(outcome.accepted, 5);
    EXPECT_EQ(outcome.refused, 0);
    EXPECT_EQ(outcome.destinations, std::vector<std::string>{"4AC3CC27 MIDI 1"});
    EXPECT_EQ(outcome.serial, "4AC3CC27");
    EXPECT_TRUE(outcome.recorded);
    EXPECT_EQ(state.fullText(), "旋钮5-设置成功!");

    const ControllerLedger ledger = read_ledger();
    ASSERT_NE(ledger.held("4AC3CC27", 5), nullptr);
    EXPECT_EQ(*ledger.held("4AC3CC27", 5),
              (HeldSetting{"Control Change", 2, 74, QDateTime::fromSecsSinceEpoch(1'800'000'000, Qt::UTC)}));
    EXPECT_EQ(ledger.controllers.size(), 1u);
    EXPECT_EQ(ledger.controllers.at("4AC3CC27").size(), 1u);
    EXPECT_TRUE(notices_.empty());
}

TEST_F(RecordedSetActionTest, ThreeOfFiveAcceptedRecordsNothing)
{
    plug("4AC3CC27");
    sim.accepted_sends = 3;
    const RecordedSetAction outcome = press();
    EXPECT_EQ(outcome.accepted, 3);
    EXPECT_EQ(outcome.refused, 2);
    EXPECT_FALSE(outcome.recorded);
    EXPECT_EQ(read_ledger(), ControllerLedger{});
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
}

TEST_F(RecordedSetActionTest, APressStoppedByTheCheckRecordsNothing)
{
    plug("4AC3CC27");
    state.record(5)->set_message_channel_menu_string("0");
    const RecordedSetAction outcome = press();
    EXPECT_EQ(outcome.accepted, 0);
    EXPECT_FALSE(outcome.recorded);
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
}

TEST_F(RecordedSetActionTest, NoControllerRecordsNothing)
{
    state.set_machine_type_menu_string("4AC2CC27");
    const RecordedSetAction outcome = press();
    EXPECT_EQ(outcome.accepted, 0);
    EXPECT_EQ(outcome.serial, "4AC2CC27");
    EXPECT_FALSE(outcome.recorded);
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
}

TEST_F(RecordedSetActionTest, TwoControllersKeepTheirOwnEntries)
{
    plug("4AC1CC27");
    plug("4AC3CC27");
    state.set_machine_type_menu_string("4AC1CC27");
    EXPECT_TRUE(press().recorded);
    state.set_machine_type_menu_string("4AC3CC27");
    state.record(5)->set_message_controller_number_code_string("75");
    EXPECT_TRUE(press().recorded);

    const ControllerLedger ledger = read_ledger();
    ASSERT_NE(ledger.held("4AC1CC27", 5), nullptr);
    ASSERT_NE(ledger.held("4AC3CC27", 5), nullptr);
    EXPECT_EQ(ledger.held("4AC1CC27", 5)->controller, 74);
    EXPECT_EQ(ledger.held("4AC3CC27", 5)->controller, 75);
}
