#include <gtest/gtest.h>

#include "qt_printers.h"

#include <QSignalSpy>

#include "console_capture.h"
#include "model/configuration.h"
#include "model/global_state.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"

using namespace dialcraft;

namespace {

class SlotMappingTest : public ::testing::Test {
protected:
    void SetUp() override { configuration = Configuration{initialSettings()}; }
    void TearDown() override { configuration = Configuration{initialSettings()}; }

    // Puts three slot texts where knob `knob` reads them.
    static void put_slots(int knob, const QString& type, const QString& channel, const QString& controller)
    {
        configuration.settings[3 * knob] = type;
        configuration.settings[3 * knob + 1] = channel;
        configuration.settings[3 * knob + 2] = controller;
    }

    // The main window's copy, checking its progress line.
    static void load_knob(GlobalState& state, int knob)
    {
        ConsoleCapture out;
        SetupAreaData_index_config_to_UI(state, knob);
        EXPECT_EQ(out.finish(), "Accessing configuration.settings at index: " + std::to_string(knob) + "\n");
    }

    static void expect_record(const CreateSetupAreaViewData* record, const QString& type, const QString& channel,
                              const QString& controller)
    {
        EXPECT_EQ(record->message_type_menu_string(), type);
        EXPECT_EQ(record->message_channel_menu_string(), channel);
        EXPECT_EQ(record->message_controller_number_code_string(), controller);
    }

    GlobalState state;
};

TEST_F(SlotMappingTest, InitialTableIsNinetyBlankSlots)
{
    ASSERT_EQ(initialSettings().size(), 90);
    EXPECT_EQ(blank_slot, QString(20, u' '));
    for (const QString& s : initialSettings())
        EXPECT_EQ(s, QStringLiteral("                    "));
    EXPECT_EQ(configuration.settings, initialSettings());
}

TEST_F(SlotMappingTest, ConfigToUiAcceptsBendChangeAndBothLimits)
{
    put_slots(0, "Bend Change", "16", "127");
    state.record(0)->set_message_type_menu_string("Note On");
    state.record(0)->set_message_channel_menu_string("1");
    state.record(0)->set_message_controller_number_code_string("0");
    load_knob(state, 0);
    expect_record(state.record(0), "Bend Change", "16", "127");
}

TEST_F(SlotMappingTest, ConfigToUiTurnsSystemChangeIntoPlaceholder)
{
    put_slots(4, "System Change", "3", "10");
    load_knob(state, 4);
    expect_record(state.record(4), "选择消息类型", "3", "10");
}

TEST_F(SlotMappingTest, ConfigToUiEmptiesChannelZero)
{
    put_slots(2, "Control Change", "0", "64");
    load_knob(state, 2);
    expect_record(state.record(2), "Control Change", "", "64");
}

TEST_F(SlotMappingTest, InvalidControllerClearsChannelAndKeepsControllerField)
{
    put_slots(1, "Note On", "5", "128");
    state.record(1)->set_message_controller_number_code_string("99");
    load_knob(state, 1);
    expect_record(state.record(1), "Note On", "", "99");
}

TEST_F(SlotMappingTest, BlankSlotsGivePlaceholderEmptyChannelAndUntouchedController)
{
    state.record(7)->set_message_type_menu_string("Note Off");
    state.record(7)->set_message_channel_menu_string("9");
    state.record(7)->set_message_controller_number_code_string("42");
    load_knob(state, 7);
    expect_record(state.record(7), "选择消息类型", "", "42");
}

TEST_F(SlotMappingTest, TypeInOtherLetterCaseGivesPlaceholder)
{
    for (const char* text : {"control change", "NOTE ON", "Note on", "bend Change", " Note On", "Note On "}) {
        put_slots(0, text, "1", "1");
        state.record(0)->set_message_type_menu_string("Note Off");
        load_knob(state, 0);
        EXPECT_EQ(state.record(0)->message_type_menu_string(), Default_TYPE_STRING) << text;
    }
}

TEST_F(SlotMappingTest, AllFourTypesAreAccepted)
{
    for (const QString& type : {NOTE_ON, NOTE_OFF, CONTROL_CHANGE, BEND_CHANGE}) {
        put_slots(3, type, "2", "3");
        load_knob(state, 3);
        EXPECT_EQ(state.record(3)->message_type_menu_string(), type);
    }
}

TEST_F(SlotMappingTest, NumbersAreKeptAsTyped)
{
    put_slots(6, "Note On", "05", "+007");
    load_knob(state, 6);
    expect_record(state.record(6), "Note On", "05", "+007");
}

TEST_F(SlotMappingTest, ChannelWithBlanksOrOtherTextIsEmptied)
{
    for (const char* channel : {" 5", "5 ", "17", "-3", "1.0", "0x1", "abc", ""}) {
        put_slots(0, "Note On", channel, "60");
        state.record(0)->set_message_channel_menu_string("8");
        load_knob(state, 0);
        EXPECT_EQ(state.record(0)->message_channel_menu_string(), "") << channel;
        EXPECT_EQ(state.record(0)->message_controller_number_code_string(), "60") << channel;
    }
}

TEST_F(SlotMappingTest, MainWindowCopyPrintsProgressLinePanelCopyDoesNot)
{
    put_slots(12, "Note On", "1", "60");
    {
        ConsoleCapture out;
        SetupAreaData_index_config_to_UI(state, 12, SlotMappingView::ContentView);
        EXPECT_EQ(out.finish(), "Accessing configuration.settings at index: 12\n");
    }
    {
        ConsoleCapture out;
        SetupAreaData_index_config_to_UI(state, 12, SlotMappingView::CreateConfigAreaView);
        EXPECT_EQ(out.finish(), "");
    }
    // Both record-to-table copies print the line, with the knob index.
    for (SlotMappingView view : {SlotMappingView::ContentView, SlotMappingView::CreateConfigAreaView}) {
        ConsoleCapture out;
        SetupAreaData_index_UI_to_config(state, 12, view);
        EXPECT_EQ(out.finish(), "Accessing configuration.settings at index: 12\n");
    }
}

TEST_F(SlotMappingTest, UiToConfigWritesTheWorkedExampleIntoSlots15To17)
{
    state.record(5)->set_message_type_menu_string("Control Change");
    state.record(5)->set_message_channel_menu_string("2");
    state.record(5)->set_message_controller_number_code_string("74");
    ConsoleCapture out;
    SetupAreaData_index_UI_to_config(state, 5);
    EXPECT_EQ(out.finish(), "Accessing configuration.settings at index: 5\n");
    EXPECT_EQ(configuration.settings.size(), 90);
    EXPECT_EQ(configuration.settings[15], "Control Change");
    EXPECT_EQ(configuration.settings[16], "2");
    EXPECT_EQ(configuration.settings[17], "74");
    EXPECT_EQ(configuration.settings[14], blank_slot);
    EXPECT_EQ(configuration.settings[18], blank_slot);
}

TEST_F(SlotMappingTest, UiToConfigWritesEmptyChannelAndPlaceholderAsTheyStand)
{
    state.record(3)->set_message_channel_menu_string("");
    state.record(3)->set_message_controller_number_code_string(" 05 ");
    ConsoleCapture out;
    SetupAreaData_index_UI_to_config(state, 3);
    out.finish();
    EXPECT_EQ(configuration.settings[9], "选择消息类型");
    EXPECT_EQ(configuration.settings[10], "");
    EXPECT_EQ(configuration.settings[11], " 05 ");
    EXPECT_EQ(configuration.settings.size(), 90);
}

TEST_F(SlotMappingTest, ConfigToUiAnnouncesEveryAssignment)
{
    put_slots(0, "Note On", "1", "60");
    QSignalSpy will(state.record(0), &CreateSetupAreaViewData::objectWillChange);
    QSignalSpy type(state.record(0), &CreateSetupAreaViewData::message_type_menu_stringChanged);
    QSignalSpy channel(state.record(0), &CreateSetupAreaViewData::message_channel_menu_stringChanged);
    QSignalSpy controller(state.record(0), &CreateSetupAreaViewData::message_controller_number_code_stringChanged);
    SetupAreaData_index_config_to_UI(state, 0, SlotMappingView::CreateConfigAreaView);
    EXPECT_EQ(will.count(), 3);
    EXPECT_EQ(type.count(), 1);
    EXPECT_EQ(channel.count(), 1);
    EXPECT_EQ(controller.count(), 1);

    // The crossing case assigns the channel twice and the controller never.
    put_slots(0, "Note On", "1", "500");
    SetupAreaData_index_config_to_UI(state, 0, SlotMappingView::CreateConfigAreaView);
    EXPECT_EQ(will.count(), 6);
    EXPECT_EQ(channel.count(), 3);
    EXPECT_EQ(controller.count(), 1);
}

TEST_F(SlotMappingTest, RoundTripOfKnobs0To26)
{
    for (int i = 0; i < 27; ++i) {
        state.record(i)->set_message_type_menu_string(i % 2 ? "Note On" : "Bend Change");
        state.record(i)->set_message_channel_menu_string(QString::number(i % 16 + 1));
        state.record(i)->set_message_controller_number_code_string(QString::number(i * 4));
    }
    ConsoleCapture out;
    for (int i = 0; i < 27; ++i)
        SetupAreaData_index_UI_to_config(state, i);
    out.finish();
    GlobalState other;
    for (int i = 0; i < 27; ++i)
        SetupAreaData_index_config_to_UI(other, i, SlotMappingView::CreateConfigAreaView);
    for (int i = 0; i < 27; ++i)
        expect_record(other.record(i), i % 2 ? "Note On" : "Bend Change", QString::number(i % 16 + 1),
                      QString::number(i * 4));
    // Knob 27 onwards was never written.
    EXPECT_EQ(configuration.settings[81], blank_slot);
}

TEST_F(SlotMappingTest, UpdateConfigurationSettingsPastTheEndAppends)
{
    configuration.settings = QStringList(300, blank_slot);
    state.record(0)->set_message_type_menu_string("Note Off");
    state.record(0)->updateConfigurationSettings(500);
    ASSERT_EQ(configuration.settings.size(), 301);
    EXPECT_EQ(configuration.settings[300], "Note Off");
    EXPECT_EQ(configuration.settings[299], blank_slot);
}

TEST_F(SlotMappingTest, UpdateConfigurationSettingsInsideReplacesTheSlot)
{
    state.record(9)->set_message_type_menu_string("Bend Change");
    state.record(9)->updateConfigurationSettings(4);
    EXPECT_EQ(configuration.settings.size(), 90);
    EXPECT_EQ(configuration.settings[4], "Bend Change");
    state.record(9)->updateConfigurationSettings(90);
    ASSERT_EQ(configuration.settings.size(), 91);
    EXPECT_EQ(configuration.settings[90], "Bend Change");
}

using SlotMappingDeathTest = SlotMappingTest;

TEST_F(SlotMappingDeathTest, KnobPastTheInitialTableIsFatal)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(SetupAreaData_index_config_to_UI(state, 30), "Index out of range");
    EXPECT_DEATH(SetupAreaData_index_UI_to_config(state, 30), "Index out of range");
}

TEST_F(SlotMappingDeathTest, KnobOutsideTheRecordListIsFatal)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    configuration.settings = QStringList(300, blank_slot);
    EXPECT_DEATH(SetupAreaData_index_config_to_UI(state, 36), "Index out of range");
    EXPECT_DEATH(SetupAreaData_index_UI_to_config(state, 36), "Index out of range");
    EXPECT_DEATH(SetupAreaData_index_config_to_UI(state, -1), "Index out of range");
}

TEST_F(SlotMappingTest, Knob29IsTheLastOneTheInitialTableHolds)
{
    put_slots(29, "Note Off", "16", "0");
    SetupAreaData_index_config_to_UI(state, 29, SlotMappingView::CreateConfigAreaView);
    expect_record(state.record(29), "Note Off", "16", "0");
}

}  // namespace
