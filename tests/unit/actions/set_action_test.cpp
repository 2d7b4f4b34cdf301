#include <gtest/gtest.h>

#include <QCoreApplication>

#include <string>
#include <vector>

#include "actions/set_action.h"
#include "link_lines.h"
#include "model/global_state.h"
#include "model/handover.h"
#include "programming_messages.h"
#include "sim_link_fixture.h"

using namespace dialcraft;

using Bytes = std::vector<uint8_t>;

namespace {

std::string hex(uint32_t code, const char* format)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, code);
    return buffer;
}

// The link's lines of one probe when `sources` sources exist and the probed
// serial is (or is not) among them as its only match at `index`.
std::string probe_lines(int i, int sources, int match_index)
{
    const uint32_t code = 0x4AC0CC27u + (static_cast<uint32_t>(i) << 16);
    std::string out = hex(code, "set_device_name %x \r\n") + "MIDIGetNumberOfSources " + std::to_string(sources) +
                      " \r\n";
    if (match_index < 0)
        out += "midi init failed \r\n";
    else
        out += "midi init success ,number code " + std::to_string(match_index) + " \r\n" +
               hex(code, "%X MIDI 1 is online\r\n");
    char line[80];
    std::snprintf(line, sizeof line, "i = 0x%02X, device_connect_id_arg = 0x%08X\n", i, code);
    return out + line;
}

std::string summary(const std::string& knob, const std::string& type, const std::string& channel,
                    const std::string& controller)
{
    return "--------------------------\n硬件索引 : " + knob + "\n消息类型 : " + type + "\nMIDI通道 : " + channel +
           "\n控制器号 : " + controller + "\n--------------------------\n";
}

}  // namespace

class SetAction : public SimLinkTest {
protected:
    void SetUp() override
    {
        SimLinkTest::SetUp();
        knob = state.record(5);
        set_knob(knob, "Control Change", "2", "74");
    }

    static void set_knob(CreateSetupAreaViewData* k, const QString& type, const QString& channel,
                         const QString& controller)
    {
        k->set_message_type_menu_string(type);
        k->set_message_channel_menu_string(channel);
        k->set_message_controller_number_code_string(controller);
    }

    std::string press(CreateSetupAreaViewData* k = nullptr)
    {
        return output_of([&] { setup_button_action(k ? *k : *knob, state); });
    }

    std::vector<Bytes> wire_to(const std::string& destination) const
    {
        std::vector<Bytes> out;
        for (const auto& p : sim.sent())
            if (p.destination == destination)
                out.push_back(p.bytes);
        return out;
    }

    static std::vector<Bytes> programming(uint8_t type_channel, uint8_t controller, uint8_t knob_index)
    {
        return programming_messages(knob_index, type_channel, controller);
    }

    GlobalState state;
    CreateSetupAreaViewData* knob = nullptr;
};

TEST_F(SetAction, CompleteConsoleOutputOfTheExamplePress)
{
    plug("4AC1CC27");
    std::string expected;
    for (int i = 0; i < 16; ++i)
        expected += probe_lines(i, 1, i == 1 ? 0 : -1);
    expected +=
        "set_device_name 4ac1cc27 \r\nmiddle_value 1 \r\nGenerated device_name: 4AC1CC27\n"
        "MIDIGetNumberOfSources 1 \r\nmidi init success ,number code 0 \r\n4AC1CC27 MIDI 1 is online\r\n"
        "-1--set_device_name(0x4AC1CC27);\n";
    expected += summary("5", "Control Change", "2", "74");
    expected += "MIDI通道 ok\n控制器号 ok\n消息类型 ok\n参数正确\nCONTROL_CHANGE\n";
    expected += scan_lines(1) + "key_code_value_set\r\n" + scan_lines(1) + sent_lines("clock mc\r\n") +
                sent_lines("MSG: 91 4a 5 \r\n") + sent_lines("MSG: 81 4a 5 \r\n") + sent_lines("MSG: b1 4a 5 \r\n") +
                sent_lines("clock mc\r\n");
    expected += "0\n";

    const std::string out = press();
    EXPECT_EQ(out, expected);
    EXPECT_EQ(state.fullText(), "旋钮5-设置成功!");
    EXPECT_EQ(wire_to("4AC1CC27 MIDI 1"), programming(0xB1, 0x4A, 0x05));
    EXPECT_EQ(state.machine_type_menu_string(), "4AC1CC27");
    EXPECT_EQ(command_setup_succeed_flag, 0);
    EXPECT_EQ(c_arg_transfer_UInt8_1, 0x05);
    EXPECT_EQ(c_arg_transfer_UInt8_2, 0xB1);
    EXPECT_EQ(c_arg_transfer_UInt8_3, 0x4A);
    EXPECT_EQ(c_arg_transfer_UInt8_4, 0x4A);
}

TEST_F(SetAction, SingleControllerIsProgrammedAndTheMenuFollowsIt)
{
    plug("4AC3CC27");
    state.set_machine_type_menu_string("4AC1CC27");
    const std::string out = press();
    EXPECT_NE(out.find("-3--set_device_name(0x4AC3CC27);\n"), std::string::npos);
    EXPECT_EQ(state.machine_type_menu_string(), "4AC3CC27");
    EXPECT_EQ(wire_to("4AC3CC27 MIDI 1"), programming(0xB1, 0x4A, 0x05));
    EXPECT_EQ(sim.sent().size(), 5u);
    EXPECT_EQ(state.fullText(), "旋钮5-设置成功!");
    EXPECT_STREQ(device_name, "4AC3CC27");
    std::vector<uint8_t> expected(36, 0);
    expected[3] = 1;
    EXPECT_EQ(device_connect_state_retval, expected);
}

TEST_F(SetAction, FailureTextNamesTheSwitchedSerial)
{
    sim.add_device("4AC3CC27", "Maker", "4AC3CC27");
    sim.add_source("4AC3CC27 MIDI 1");
    const int dest = sim.add_destination("4AC3CC27 MIDI 1");
    sim.set_send_status(dest, -19);
    state.set_machine_type_menu_string("4AC1CC27");
    const std::string out = press();
    EXPECT_EQ(command_setup_succeed_flag, 5);
    EXPECT_EQ(state.fullText(), "旋钮5-设置失败..\n4AC3CC27");
    EXPECT_EQ(out.substr(out.size() - 2), "5\n");
}

TEST_F(SetAction, TwoControllersLetTheMenuDecide)
{
    plug("4AC1CC27");
    plug("4AC2CC27");
    state.set_machine_type_menu_string("4AC2CC27");
    const std::string out = press();
    EXPECT_NE(out.find("\nUser selected: 4AC2CC27\nset_device_name(0x4AC2CC27);\n"), std::string::npos);
    EXPECT_EQ(state.machine_type_menu_string(), "4AC2CC27");
    EXPECT_TRUE(wire_to("4AC1CC27 MIDI 1").empty());
    EXPECT_EQ(wire_to("4AC2CC27 MIDI 1"), programming(0xB1, 0x4A, 0x05));
    EXPECT_EQ(device_connect_state_retval[1], 1);
    EXPECT_EQ(device_connect_state_retval[2], 1);
}

TEST_F(SetAction, NoControllerUsesTheMenuSerial)
{
    sim.add_device("Midi Through", "", "Midi Through");
    state.set_machine_type_menu_string("4AC2CC27");
    const std::string out = press();
    std::string expected;
    for (int i = 0; i < 16; ++i)
        expected += probe_lines(i, 0, -1);
    expected +=
        "set_device_name 4ac2cc27 \r\nmiddle_value 2 \r\nGenerated device_name: 4AC2CC27\n"
        "MIDIGetNumberOfSources 0 \r\nmidi init failed \r\n"
        "User selected: 4AC2CC27\nset_device_name(0x4AC2CC27);\n";
    EXPECT_EQ(out.substr(0, expected.size()), expected);
    EXPECT_EQ(command_setup_succeed_flag, 5);
    EXPECT_EQ(state.fullText(), "旋钮5-设置失败..\n4AC2CC27");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(SetAction, NoDevicesAtAllReportsSuccess)
{
    state.set_machine_type_menu_string("4AC2CC27");
    press();
    EXPECT_EQ(command_setup_succeed_flag, 0);
    EXPECT_EQ(state.fullText(), "旋钮5-设置成功!");
}

TEST_F(SetAction, MenuTextWithoutAffixesLeavesTheLastProbedTarget)
{
    plug("4ACFCC27");
    plug("4AC1CC27");
    for (const char* menu : {"", "4AC1CC2", "x4AC1CC27"}) {
        state.set_machine_type_menu_string(menu);
        sim.clear_sent();
        const std::string out = press();
        EXPECT_NE(out.find("i = 0x0F, device_connect_id_arg = 0x4ACFCC27\nError: Invalid machine type selected\n"
                           "--------------------------\n"),
                  std::string::npos)
            << menu;
        EXPECT_STREQ(device_name, "4ACFCC27");
        EXPECT_EQ(wire_to("4ACFCC27 MIDI 1"), programming(0xB1, 0x4A, 0x05)) << menu;
        EXPECT_EQ(state.machine_type_menu_string(), menu);
    }
}

TEST_F(SetAction, BadMiddleDigitsReportAndGoOn)
{
    for (const char* menu : {"4AC10CC27", "4ACCC27", "4ACGCC27", "4AC CC27", "4AC-1CC27"}) {
        state.set_machine_type_menu_string(menu);
        const std::string out = press();
        EXPECT_NE(out.find("\nError: Invalid middle hex value in machine type\n--------------------------\n"),
                  std::string::npos)
            << menu;
        EXPECT_EQ(out.find("Error: Invalid machine type selected"), std::string::npos);
        EXPECT_STREQ(device_name, "4ACFCC27");
    }
}

TEST_F(SetAction, LowerCaseMiddleDigitIsAccepted)
{
    state.set_machine_type_menu_string("4ACaCC27");
    const std::string out = press();
    EXPECT_NE(out.find("\nUser selected: 4ACaCC27\nset_device_name(0x4ACACC27);\n"), std::string::npos);
    EXPECT_STREQ(device_name, "4ACACC27");
}

TEST_F(SetAction, OverlappingAffixesAreFatal)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    state.set_machine_type_menu_string("4ACC27");
    EXPECT_DEATH(press(), "Range requires lowerBound <= upperBound");
}

TEST_F(SetAction, KnobIndexBeyondAByteIsFatal)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    CreateSetupAreaViewData big(256);
    set_knob(&big, "Note On", "1", "1");
    EXPECT_DEATH(press(&big), "Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(SetAction, ParameterFailureSendsNothingAfterProbesAndSummary)
{
    plug("4AC1CC27");
    set_knob(knob, "Control Change", "0", "74");
    const std::string out = press();
    EXPECT_TRUE(sim.sent().empty());
    EXPECT_EQ(state.fullText(), "参数错误-MIDI通道\n范围1~16");
    const std::string tail = summary("5", "Control Change", "0", "74") + "控制器号 ok\n消息类型 ok\n";
    ASSERT_GE(out.size(), tail.size());
    EXPECT_EQ(out.substr(out.size() - tail.size()), tail);
    for (int i = 0; i < 16; ++i)
        EXPECT_NE(out.find(hex(0x4AC0CC27u + (static_cast<uint32_t>(i) << 16), "device_connect_id_arg = 0x%08X\n")),
                  std::string::npos);
    // The menu still follows the single controller found.
    state.set_machine_type_menu_string("4AC0CC27");
    press();
    EXPECT_EQ(state.machine_type_menu_string(), "4AC1CC27");
}

TEST_F(SetAction, LastFailingCheckWins)
{
    set_knob(knob, "System Change", "99", "-1");
    press();
    EXPECT_EQ(state.fullText(), "参数错误-消息类型\n请下拉选择正确参数如Control Change\nNote On\n...");
    set_knob(knob, "Note On", "x", "128");
    press();
    EXPECT_EQ(state.fullText(), "参数错误-控制器号\n范围0~127");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(SetAction, StagedBytes)
{
    plug("4AC1CC27");
    CreateSetupAreaViewData* k0 = state.record(0);
    set_knob(k0, "Note On", "1", "0");
    press(k0);
    EXPECT_EQ((Bytes{c_arg_transfer_UInt8_1, c_arg_transfer_UInt8_2, c_arg_transfer_UInt8_3, c_arg_transfer_UInt8_4}),
              (Bytes{0x00, 0x90, 0x00, 0x00}));
    EXPECT_EQ(wire_to("4AC1CC27 MIDI 1"), programming(0x90, 0x00, 0x00));

    sim.clear_sent();
    CreateSetupAreaViewData* k12 = state.record(12);
    set_knob(k12, "Bend Change", "16", "127");
    const std::string out = press(k12);
    EXPECT_NE(out.find("\nBEND_CHANGE\n"), std::string::npos);
    EXPECT_EQ((Bytes{c_arg_transfer_UInt8_1, c_arg_transfer_UInt8_2, c_arg_transfer_UInt8_3, c_arg_transfer_UInt8_4}),
              (Bytes{0x0C, 0xEF, 0x7F, 0x7F}));
    EXPECT_EQ(wire_to("4AC1CC27 MIDI 1"), programming(0xEF, 0x7F, 0x0C));
    EXPECT_EQ(state.fullText(), "旋钮12-设置成功!");
}

TEST_F(SetAction, NoteOffAndSignedTextsStageTheirValues)
{
    plug("4AC1CC27");
    set_knob(knob, "Note Off", "+05", "007");
    const std::string out = press();
    EXPECT_NE(out.find("\nNOTE_OFF\n"), std::string::npos);
    EXPECT_EQ((Bytes{c_arg_transfer_UInt8_1, c_arg_transfer_UInt8_2, c_arg_transfer_UInt8_3, c_arg_transfer_UInt8_4}),
              (Bytes{0x05, 0x84, 0x07, 0x07}));
}

TEST_F(SetAction, ProbeResultsBeyondTheFamilyStayZero)
{
    device_connect_state_retval.assign(36, 1);
    plug("4AC1CC27");
    press();
    for (size_t i = 16; i < 36; ++i)
        EXPECT_EQ(device_connect_state_retval[i], 0) << i;
    EXPECT_EQ(device_connect_state_retval.size(), 36u);
}

TEST_F(SetAction, ProgramPathLosesItsLast14Characters)
{
    press();
    const QString path = QCoreApplication::applicationFilePath();
    EXPECT_EQ(ShellCommandPath, path.left(path.size() - 14));
}

TEST(ClearDeviceMathingRetval, ZeroesAll36)
{
    device_connect_state_retval.assign(36, 7);
    ClearDeviceMathingRetval();
    EXPECT_EQ(device_connect_state_retval, std::vector<uint8_t>(36, 0));
}
