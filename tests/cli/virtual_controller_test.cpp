// The virtual controller's table, its turns and its command line, without
// the ALSA sequencer (the test bed runs it on one).
#include <gtest/gtest.h>

#include <chrono>

#include "virtual_controller/controller_commands.h"
#include "virtual_controller/virtual_knobs.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {

// Feeds a whole frame, the messages `gaps` apart; returns what each one printed.
std::vector<std::optional<std::string>> feed(VirtualKnobs& knobs, const std::vector<MidiMessage>& messages,
                                             const std::vector<std::chrono::microseconds>& gaps)
{
    auto at = VirtualKnobs::Clock::time_point{} + 1s;
    std::vector<std::optional<std::string>> printed;
    for (size_t i = 0; i < messages.size(); ++i) {
        if (i > 0)
            at += gaps[i - 1];
        printed.push_back(knobs.receive(messages[i], at));
    }
    return printed;
}

const std::vector<MidiMessage> knob5_cc{{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}};
const std::vector<std::chrono::microseconds> steady_gaps{8000us, 8500us, 8049us, 9951us};

}  // namespace

TEST(VirtualKnobsTest, AFrameIsPrintedWithItsGapsWhenComplete)
{
    VirtualKnobs knobs("4AC1CC27");
    const auto printed = feed(knobs, knob5_cc, steady_gaps);
    for (size_t i = 0; i < 4; ++i)
        EXPECT_FALSE(printed[i].has_value()) << i;
    ASSERT_TRUE(printed[4].has_value());
    EXPECT_EQ(*printed[4],
              "4AC1CC27 knob 5 = Control Change, channel 2, controller 74; 间隔(gaps) 8.0, 8.5, 8.0, 10.0 ms");
}

TEST(VirtualKnobsTest, GapsAreThoseOfTheFramesOwnMessages)
{
    VirtualKnobs knobs("4AC1CC27");
    std::vector<MidiMessage> messages{{0xB0, 0x01, 0x02}, {0xF8}};
    messages.insert(messages.end(), knob5_cc.begin(), knob5_cc.end());
    const auto printed = feed(knobs, messages, {1000000us, 1000000us, 8000us, 8500us, 8049us, 9951us});
    ASSERT_TRUE(printed.back().has_value());
    EXPECT_EQ(*printed.back(),
              "4AC1CC27 knob 5 = Control Change, channel 2, controller 74; 间隔(gaps) 8.0, 8.5, 8.0, 10.0 ms");
}

TEST(VirtualKnobsTest, TableListsProgrammedKnobsInOrderWithTheLatestSetting)
{
    VirtualKnobs knobs("4AC2CC27");
    EXPECT_EQ(knobs.table(), std::vector<std::string>{"4AC2CC27: 尚未设置旋钮(no knob programmed yet)"});
    feed(knobs, knob5_cc, steady_gaps);
    feed(knobs, {{0xF8}, {0x9F, 0x7F, 0x0C}, {0x8F, 0x7F, 0x0C}, {0xEF, 0x7F, 0x0C}, {0xF8}}, steady_gaps);
    feed(knobs, {{0xF8}, {0x90, 0x00, 0x05}, {0x80, 0x00, 0x05}, {0x90, 0x00, 0x05}, {0xF8}}, steady_gaps);
    EXPECT_EQ(knobs.table(), (std::vector<std::string>{"4AC2CC27 knob 5 = Note On, channel 1, controller 0",
                                                       "4AC2CC27 knob 12 = Bend Change, channel 16, controller 127"}));
}

TEST(VirtualKnobsTest, TurnSendsTheProgrammedStatusControllerAndValue)
{
    VirtualKnobs knobs("4AC1CC27");
    feed(knobs, knob5_cc, steady_gaps);
    feed(knobs, {{0xF8}, {0x9F, 0x10, 0x0C}, {0x8F, 0x10, 0x0C}, {0xEF, 0x10, 0x0C}, {0xF8}}, steady_gaps);
    EXPECT_EQ(std::get<MidiMessage>(knobs.turn(5, 64)), (MidiMessage{0xB1, 0x4A, 0x40}));
    EXPECT_EQ(std::get<MidiMessage>(knobs.turn(12, 127)), (MidiMessage{0xEF, 0x10, 0x7F}));
    EXPECT_EQ(std::get<std::string>(knobs.turn(6, 1)), "knob 6 尚未设置(has not been programmed)");
}

TEST(VirtualKnobsTest, AKnobProgrammedAsSystemChangeHasNothingToSend)
{
    VirtualKnobs knobs("4AC1CC27");
    feed(knobs, {{0xF8}, {0x91, 0x4A, 0x07}, {0x81, 0x4A, 0x07}, {0xF8}, {0xF8}}, steady_gaps);
    EXPECT_EQ(knobs.table(), std::vector<std::string>{"4AC1CC27 knob 7 = System Change, channel 2, controller 74"});
    EXPECT_EQ(std::get<std::string>(knobs.turn(7, 1)),
              "knob 7 没有可发送的消息(has no message to send): System Change");
}

TEST(ControllerArgumentsTest, SerialsDefaultAndRepeats)
{
    EXPECT_EQ(std::get<ControllerArguments>(parse_controller_arguments({})).serials,
              std::vector<std::string>{"4AC1CC27"});
    EXPECT_EQ(std::get<ControllerArguments>(parse_controller_arguments({"4ac3cc27", "16C3C008"})).serials,
              (std::vector<std::string>{"4AC3CC27", "16C3C008"}));
    EXPECT_TRUE(std::get<ControllerArguments>(parse_controller_arguments({"--help"})).help);
    EXPECT_EQ(std::get<std::string>(parse_controller_arguments({"4AC3CC2"})),
              "SERIAL \"4AC3CC2\" 无效(invalid); 可用(accepted): 8 个十六进制数字(eight hexadecimal digits), e.g. "
              "4AC1CC27");
    EXPECT_EQ(std::get<std::string>(parse_controller_arguments({"4AC3CC27", "4ac3cc27"})),
              "SERIAL \"4ac3cc27\" 重复(given twice)");
    EXPECT_EQ(std::get<std::string>(parse_controller_arguments({"--port"})),
              "选项(option) \"--port\" 无效(invalid); 可用(accepted): --help");
}

TEST(ControllerCommandTest, TurnTableHelpQuit)
{
    const auto turn = std::get<ControllerCommand>(parse_controller_command("turn 5 64"));
    EXPECT_EQ(turn.kind, ControllerCommand::Kind::turn);
    EXPECT_EQ(turn.knob, 5);
    EXPECT_EQ(turn.value, 64);
    EXPECT_FALSE(turn.serial.has_value());
    EXPECT_EQ(std::get<ControllerCommand>(parse_controller_command("  turn 0 127 4ac2cc27 ")).serial, "4AC2CC27");
    const auto sweep = std::get<ControllerCommand>(parse_controller_command("sweep 5 1000 4AC3CC27"));
    EXPECT_EQ(sweep.kind, ControllerCommand::Kind::sweep);
    EXPECT_EQ(sweep.knob, 5);
    EXPECT_EQ(sweep.count, 1000);
    EXPECT_EQ(sweep.serial, "4AC3CC27");
    EXPECT_EQ(std::get<ControllerCommand>(parse_controller_command("table")).kind, ControllerCommand::Kind::table);
    EXPECT_EQ(std::get<ControllerCommand>(parse_controller_command("table 4AC2CC27")).serial, "4AC2CC27");
    EXPECT_EQ(std::get<ControllerCommand>(parse_controller_command("help")).kind, ControllerCommand::Kind::help);
    EXPECT_EQ(std::get<ControllerCommand>(parse_controller_command("quit")).kind, ControllerCommand::Kind::quit);
    EXPECT_EQ(std::get<ControllerCommand>(parse_controller_command("   ")).kind, ControllerCommand::Kind::nothing);
}

TEST(ControllerCommandTest, BadCommandsSayWhatIsAccepted)
{
    EXPECT_EQ(std::get<std::string>(parse_controller_command("turn 128 1")),
              "KNOB \"128\" 无效(invalid); 可用(accepted): 0-127");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("turn 5 x")),
              "VALUE \"x\" 无效(invalid); 可用(accepted): 0-127");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("turn 5")), "用法(usage): turn KNOB VALUE [SERIAL]");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("turn 5 1 nope")),
              "SERIAL \"nope\" 无效(invalid); 可用(accepted): 8 个十六进制数字(eight hexadecimal digits)");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("spin 5")),
              "命令(command) \"spin\" 无效(invalid); 可用(accepted): turn, sweep, table, help, quit");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("sweep 5 0")),
              "COUNT \"0\" 无效(invalid); 可用(accepted): 1-1000000");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("sweep 5")), "用法(usage): sweep KNOB COUNT [SERIAL]");
    EXPECT_EQ(std::get<std::string>(parse_controller_command("quit now")), "用法(usage): quit");
}

TEST(ControllerHelpTest, DescribesTheDefaultSerialAndEveryCommand)
{
    const std::string help(controller_help());
    EXPECT_EQ(help.rfind("用法(usage): dialcraft-virtual-controller [SERIAL ...]\n", 0), 0u);
    EXPECT_NE(help.find("default 4AC1CC27"), std::string::npos);
    EXPECT_NE(help.find(controller_commands_help()), std::string::npos);
    for (const char* command : {"\n  turn KNOB VALUE [SERIAL]", "\n  sweep KNOB COUNT [SERIAL]", "\n  table [SERIAL]",
                                "\n  help", "\n  quit"})
        EXPECT_NE(help.find(command), std::string::npos) << command;
}
