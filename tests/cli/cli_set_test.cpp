// dialcraft-cli set: one knob through the set action.
#include "cli_fixture.h"

using namespace dialcraft;

using SetTest = CliTest;

namespace {
const std::string ok_line =
    "旋钮(knob) 5: Control Change, 通道(channel) 2, 控制器号(controller) 74 -> 4AC1CC27 MIDI 1, "
    "已接受(accepted) 5/5, 成功(ok)\n";
}

TEST_F(SetTest, ProgramsTheKnobAndSaysWhereAndHowManyMessagesWereAccepted)
{
    plug("4AC1CC27");
    store({"Note On", "1", "60"});
    const QByteArray before = stored();

    const CliRun result = run({"set", "5", "cc", "2", "74"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, ok_line);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.console, "");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), frame(0x05, 0xB1, 0x4A));
    expect_paced();
    EXPECT_EQ(stored(), before);
}

TEST_F(SetTest, JsonCarriesTheOutcome)
{
    plug("4AC1CC27");
    const CliRun result = run({"set", "5", "Control Change", "02", "74", "--json"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out,
              "{\"accepted\":5,\"channel\":\"02\",\"controller\":\"74\",\"destinations\":[\"4AC1CC27 MIDI 1\"],"
              "\"knob\":5,\"message\":\"旋钮5-设置成功!\",\"ok\":true,\"refused\":0,\"result\":0,"
              "\"serial\":\"4AC1CC27\",\"type\":\"Control Change\"}\n");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), frame(0x05, 0xB1, 0x4A));
}

struct TypeCase {
    std::string argument;
    uint8_t nibble;
    std::string name;
};

class SetTypeTest : public CliTest, public ::testing::WithParamInterface<TypeCase> {};

TEST_P(SetTypeTest, TypeNamesAndShortFormsGiveTheirStatus)
{
    plug("4AC1CC27");
    const CliRun result = run({"set", "12", GetParam().argument, "16", "127"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "旋钮(knob) 12: " + GetParam().name +
                              ", 通道(channel) 16, 控制器号(controller) 127 -> 4AC1CC27 MIDI 1, "
                              "已接受(accepted) 5/5, 成功(ok)\n");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), frame(0x0C, static_cast<uint8_t>(GetParam().nibble << 4 | 0x0F), 0x7F));
}

INSTANTIATE_TEST_SUITE_P(Types, SetTypeTest,
                         ::testing::Values(TypeCase{"note-on", 0x9, "Note On"}, TypeCase{"Note On", 0x9, "Note On"},
                                           TypeCase{"note-off", 0x8, "Note Off"}, TypeCase{"NOTE OFF", 0x8, "Note Off"},
                                           TypeCase{"cc", 0xB, "Control Change"},
                                           TypeCase{"control change", 0xB, "Control Change"},
                                           TypeCase{"bend", 0xE, "Bend Change"},
                                           TypeCase{"Bend Change", 0xE, "Bend Change"}));

TEST_F(SetTest, OneControllerIsFoundWithoutSerial)
{
    plug("4AC3CC27");
    const CliRun result = run({"set", "0", "note-on", "1", "0", "--json"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_NE(result.out.find("\"serial\":\"4AC3CC27\""), std::string::npos) << result.out;
    EXPECT_EQ(sent_to("4AC3CC27 MIDI 1"), frame(0x00, 0x90, 0x00));
}

TEST_F(SetTest, SerialChoosesAmongSeveralControllers)
{
    plug("4AC1CC27");
    plug("4AC2CC27");
    const CliRun result = run({"set", "5", "cc", "2", "74", "--serial", "4ac2cc27"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out,
              "旋钮(knob) 5: Control Change, 通道(channel) 2, 控制器号(controller) 74 -> 4AC2CC27 MIDI 1, "
              "已接受(accepted) 5/5, 成功(ok)\n");
    EXPECT_EQ(sent_to("4AC2CC27 MIDI 1"), frame(0x05, 0xB1, 0x4A));
}

TEST_F(SetTest, SeveralControllersWithoutSerialIsAUsageError)
{
    plug("4AC1CC27");
    plug("4AC2CC27");
    const CliRun result = run({"set", "5", "cc", "2", "74"});
    EXPECT_EQ(result.status, cli_usage_error);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "dialcraft-cli set: 有多个控制器, 请用 --serial 选择(several controllers are present; choose one "
              "with --serial): 4AC1CC27, 4AC2CC27\n");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(SetTest, SerialThatIsNotPresentExitsThree)
{
    plug("4AC1CC27");
    const CliRun result = run({"set", "5", "cc", "2", "74", "--serial=4AC5CC27"});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "dialcraft-cli set: --serial 4AC5CC27 不在(is not present); 现有(present): 4AC1CC27\n");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(SetTest, NoControllerExitsThreeAndSendsNothing)
{
    // With no MIDI device at all the window's press reports success without
    // sending anything; the tool says there is no controller instead.
    const CliRun result = run({"set", "5", "cc", "2", "74"});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "dialcraft-cli set: 没有控制器(no controller is present)\n");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(SetTest, JsonReportsAFailureAsJsonToo)
{
    const CliRun none = run({"set", "5", "cc", "2", "74", "--json"});
    EXPECT_EQ(none.status, cli_no_controller);
    EXPECT_EQ(none.out,
              "{\"error\":\"dialcraft-cli set: 没有控制器(no controller is present)\",\"exit\":3,\"ok\":false}\n");
    EXPECT_EQ(none.err, "dialcraft-cli set: 没有控制器(no controller is present)\n");

    plug("4AC1CC27");
    const CliRun bad = run({"set", "5", "cc", "2", "740", "--json"});
    EXPECT_EQ(bad.status, cli_usage_error);
    EXPECT_EQ(
        bad.out,
        "{\"error\":\"dialcraft-cli set: CONTROLLER \\\"740\\\" 无效(invalid); 可用(accepted): 0-127\",\"exit\":2,"
        "\"ok\":false}\n");
    EXPECT_TRUE(sim.sent().empty());

    // A command without JSON output keeps standard output empty.
    EXPECT_EQ(run({"export", "x.txt", "--json"}).out, "");
}

TEST_F(SetTest, RefusedMessagesFailTheKnob)
{
    const int destination = plug("4AC1CC27");
    sim.set_send_status(destination, 1);
    const CliRun text = run({"set", "5", "cc", "2", "74"});
    EXPECT_EQ(text.status, cli_failed);
    EXPECT_EQ(text.out,
              "旋钮(knob) 5: Control Change, 通道(channel) 2, 控制器号(controller) 74 -> 无(none), "
              "已接受(accepted) 0/5, 失败(failed)\n");

    const CliRun json = run({"set", "5", "cc", "2", "74", "--json"});
    EXPECT_EQ(json.status, cli_failed);
    EXPECT_EQ(json.out,
              "{\"accepted\":0,\"channel\":\"2\",\"controller\":\"74\",\"destinations\":[],\"knob\":5,"
              "\"message\":\"旋钮5-设置失败..\\n4AC1CC27\",\"ok\":false,\"refused\":5,\"result\":5,"
              "\"serial\":\"4AC1CC27\",\"type\":\"Control Change\"}\n");
}

TEST_F(SetTest, VerboseShowsTheLinkAndActionLinesOnStandardError)
{
    plug("4AC1CC27");
    const CliRun result = run({"--verbose", "set", "5", "cc", "2", "74"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, ok_line);
    EXPECT_EQ(result.console, "");
    EXPECT_EQ(count_lines(result.err, "-1--set_device_name(0x4AC1CC27);\n"), 1);
    EXPECT_EQ(count_lines(result.err, "参数正确\n"), 1);
    EXPECT_EQ(count_lines(result.err, "key_code_value_set\r\n"), 1);
    EXPECT_EQ(count_lines(result.err, "MSG: b1 4a 5 \r\n"), 1);
    EXPECT_EQ(count_lines(result.err, "clock mc\r\n"), 2);
    EXPECT_EQ(printed_lines(result.err).back(), "midi_exit\r\n");
}
