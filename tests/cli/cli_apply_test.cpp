// dialcraft-cli apply: knobs 0 to 26 of an exported file.
#include "cli_fixture.h"

using namespace dialcraft;

using ApplyTest = CliTest;

namespace {

std::string ok_line(int knob, const std::string& setting)
{
    return "旋钮(knob) " + std::to_string(knob) + ": " + setting +
           " -> 4AC1CC27 MIDI 1, 已接受(accepted) 5/5, 成功(ok)\n";
}

Messages concat(std::initializer_list<Messages> frames)
{
    Messages all;
    for (const Messages& f : frames)
        all.insert(all.end(), f.begin(), f.end());
    return all;
}

}  // namespace

TEST_F(ApplyTest, ProgramsExactlyTheConfiguredKnobsInOrder)
{
    plug("4AC1CC27");
    store({"Bend Change", "3", "3"});
    const QByteArray before = stored();
    const std::string path = write_file("five.txt", knob_file({{0, {"Note On", "1", "60"}},
                                                               {3, {"Control Change", "2", "74"}},
                                                               {12, {"Bend Change", "16", "127"}},
                                                               {20, {"Note Off", "10", "0"}},
                                                               {26, {"Control Change", "16", "5"}}}));
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, ok_line(0, "Note On, 通道(channel) 1, 控制器号(controller) 60") +
                              ok_line(3, "Control Change, 通道(channel) 2, 控制器号(controller) 74") +
                              ok_line(12, "Bend Change, 通道(channel) 16, 控制器号(controller) 127") +
                              ok_line(20, "Note Off, 通道(channel) 10, 控制器号(controller) 0") +
                              ok_line(26, "Control Change, 通道(channel) 16, 控制器号(controller) 5") +
                              "已设置(programmed) 5, 失败(failed) 0, 跳过(skipped) 22\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.console, "");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), concat({frame(0x00, 0x90, 60), frame(0x03, 0xB1, 74), frame(0x0C, 0xEF, 127),
                                                  frame(0x14, 0x89, 0), frame(0x1A, 0xBF, 5)}));
    expect_paced();
    EXPECT_EQ(stored(), before);
}

TEST_F(ApplyTest, JsonListsEachKnobAndTheSkippedOnes)
{
    plug("4AC1CC27");
    const std::string path = write_file("one.txt", knob_file({{3, {"Control Change", "2", "74"}}}));
    const CliRun result = run({"apply", "--json", path});
    EXPECT_EQ(result.status, cli_success);
    std::string skipped;
    for (int knob = 0; knob <= 26; ++knob)
        if (knob != 3)
            skipped += (skipped.empty() ? "" : ",") + std::to_string(knob);
    EXPECT_EQ(result.out,
              "{\"failed\":0,\"knobs\":[{\"accepted\":5,\"channel\":\"2\",\"controller\":\"74\","
              "\"destinations\":[\"4AC1CC27 MIDI 1\"],\"knob\":3,\"message\":\"旋钮3-设置成功!\",\"ok\":true,"
              "\"refused\":0,\"result\":0,\"serial\":\"4AC1CC27\",\"type\":\"Control Change\"}],\"programmed\":1,"
              "\"skipped\":[" +
                  skipped + "]}\n");
}

TEST_F(ApplyTest, AnExportedTableProgramsExactlyItsConfiguredKnobs)
{
    plug("4AC1CC27");
    // Knobs never configured export as "Control Change", an empty channel
    // line and their controller: empty slots that must not shift knob 3.
    store({"Note On", "1", "60", "选择消息类型", "", "", "选择消息类型", "", "", "Control Change", "2", "74"});
    ASSERT_EQ(run({"export", file("table.txt")}).status, cli_success);
    const QByteArray exported = read_file("table.txt");
    ASSERT_TRUE(exported.startsWith("Note On\n1\n60\nControl Change\n\n"));

    const CliRun result = run({"apply", file("table.txt")});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, ok_line(0, "Note On, 通道(channel) 1, 控制器号(controller) 60") +
                              ok_line(3, "Control Change, 通道(channel) 2, 控制器号(controller) 74") +
                              "已设置(programmed) 2, 失败(failed) 0, 跳过(skipped) 25\n");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), concat({frame(0x00, 0x90, 60), frame(0x03, 0xB1, 74)}));
}

TEST_F(ApplyTest, EmptyLinesAreEmptySlotsAndAShortFileIsWarnedAbout)
{
    plug("4AC1CC27");
    // Line 4 is knob 1's empty type line: knob 1 is skipped, knob 2 starts on
    // line 7 where the file put it.
    const std::string path = write_file("gap.txt", "Note On\n1\n60\n\n\n\nControl Change\n2\n74\n");
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err,
              "dialcraft-cli apply: 警告(warning): 文件只有 9 行, 少于旋钮 0-26 的 81 行; 缺少的旋钮跳过(the file "
              "has only 9 lines, fewer than the 81 of knobs 0-26; the knobs it lacks are skipped)\n");
    EXPECT_EQ(result.out, ok_line(0, "Note On, 通道(channel) 1, 控制器号(controller) 60") +
                              ok_line(2, "Control Change, 通道(channel) 2, 控制器号(controller) 74") +
                              "已设置(programmed) 2, 失败(failed) 0, 跳过(skipped) 25\n");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), concat({frame(0x00, 0x90, 60), frame(0x02, 0xB1, 74)}));
}

TEST_F(ApplyTest, AKnobWithAnEmptyChannelLineIsSkippedNotFailed)
{
    plug("4AC1CC27");
    QByteArray bytes = knob_file({{3, {"Control Change", "2", "74"}}, {4, {"Note On", "", "64"}}});
    const std::string path = write_file("empty_channel.txt", bytes);
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, ok_line(3, "Control Change, 通道(channel) 2, 控制器号(controller) 74") +
                              "已设置(programmed) 1, 失败(failed) 0, 跳过(skipped) 26\n");
}

TEST_F(ApplyTest, TypeLinesNamingNoTypeAreWarnedAbout)
{
    plug("4AC1CC27");
    const std::string path = write_file("typeless.txt", knob_file({{1, {"Knob", "2", "74"}},
                                                                   {3, {"Control Change", "2", "74"}},
                                                                   {9, {"cc", "1", "1"}}}));
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err,
              "dialcraft-cli apply: 警告(warning): 类型行不是消息类型, 这些旋钮跳过(type lines that name no message "
              "type; those knobs are skipped): 第(line) 4, 28\n");
    EXPECT_EQ(result.out, ok_line(3, "Control Change, 通道(channel) 2, 控制器号(controller) 74") +
                              "已设置(programmed) 1, 失败(failed) 0, 跳过(skipped) 26\n");
}

TEST_F(ApplyTest, CrLfLineEndsReadAsLineEnds)
{
    plug("4AC1CC27");
    QByteArray bytes = knob_file({{3, {"Control Change", "2", "74"}}});
    bytes.replace("\n", "\r\n");
    const CliRun result = run({"apply", write_file("crlf.txt", bytes)});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), frame(0x03, 0xB1, 74));
}

TEST_F(ApplyTest, AKnobFailingItsCheckIsReportedAndFailsTheRun)
{
    plug("4AC1CC27");
    // Channel 0 is blanked when the slots are copied into the record, so the
    // set action's check stops that knob; the other one is programmed.
    const std::string path = write_file("bad.txt", knob_file({{3, {"Control Change", "2", "74"}},
                                                              {4, {"Control Change", "0", "64"}}}));
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_EQ(result.out, ok_line(3, "Control Change, 通道(channel) 2, 控制器号(controller) 74") +
                              "旋钮(knob) 4: Control Change, 通道(channel) -, 控制器号(controller) 64 -> "
                              "未发送(not sent): 参数错误-MIDI通道 范围1~16\n"
                              "已设置(programmed) 1, 失败(failed) 1, 跳过(skipped) 25\n");
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), frame(0x03, 0xB1, 74));
}

TEST_F(ApplyTest, NothingToProgramSendsNothingAndExitsOne)
{
    plug("4AC1CC27");
    const std::string path = write_file("blank.txt", knob_file({{2, {"System Change", "1", "1"}}}));
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_EQ(result.out, "已设置(programmed) 0, 失败(failed) 0, 跳过(skipped) 27\n");
    EXPECT_EQ(result.err,
              "dialcraft-cli apply: 文件里没有可设置的旋钮(the file has no knob to program: none of knobs 0-26 is "
              "Note On, Note Off, Control Change or Bend Change)\n");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(ApplyTest, NoControllerExitsThree)
{
    const std::string path = write_file("one.txt", knob_file({{3, {"Control Change", "2", "74"}}}));
    const CliRun result = run({"apply", path});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "dialcraft-cli apply: 没有控制器(no controller is present)\n");
}

TEST_F(ApplyTest, ProgressBarOnlyOnATerminal)
{
    plug("4AC1CC27");
    const std::string path = write_file("two.txt",
                                        knob_file({{3, {"Control Change", "2", "74"}}, {7, {"Note On", "1", "1"}}}));
    const CliRun terminal = run({"apply", path}, true);
    EXPECT_EQ(terminal.status, cli_success);
    EXPECT_EQ(terminal.err,
              "\r\033[K[....................] 0/2 旋钮(knob) 3\r\033[K"
              "\r\033[K[##########..........] 1/2 旋钮(knob) 7\r\033[K");
    const CliRun pipe = run({"apply", path});
    EXPECT_EQ(pipe.err, "");
    EXPECT_EQ(pipe.out, terminal.out);
}
