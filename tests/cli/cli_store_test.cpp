// dialcraft-cli show, export and import: the stored knob table.
#include "cli_fixture.h"

#include <QFileInfo>
#include <QUrl>

#include "file_size_limit.h"
#include "model/config_file_transfer.h"
#include "model/configuration_json.h"
#include "model/global_state.h"
#include "model/slot_mapping.h"

using namespace dialcraft;

using StoreTest = CliTest;

namespace {

std::string default_knob_json(int knob)
{
    return "{\"channel\":\"\",\"controller\":\"127\",\"knob\":" + std::to_string(knob) + ",\"type\":\"选择消息类型\"}";
}

QStringList table_with(const std::vector<std::pair<int, QStringList>>& knobs)
{
    QStringList slot_texts = initialSettings();
    for (const auto& [knob, values] : knobs)
        for (qsizetype i = 0; i < 3; ++i)
            slot_texts[knob * 3 + i] = values[i];
    return slot_texts;
}

}  // namespace

TEST_F(StoreTest, ShowOfAFreshStoreIsTheWindowsFirstStart)
{
    const CliRun result = run({"show"});
    EXPECT_EQ(result.status, cli_success);
    std::string expected = "旋钮(knob)  类型(type)    通道(channel)  控制器号(controller)\n";
    for (int knob = 0; knob <= 26; ++knob) {
        const std::string number = std::to_string(knob);
        expected += number + std::string(12 - number.size(), ' ') + "选择消息类型  -" + std::string(14, ' ') + "127\n";
    }
    EXPECT_EQ(result.out, expected);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.console, "");
}

TEST_F(StoreTest, ShowJsonHoldsTheRecordsAsTheSlotCopyLeavesThem)
{
    store(table_with({{0, {"Note On", "01", "60"}},
                      {1, {"System Change", "3", "10"}},
                      {5, {"Control Change", "2", "74"}},
                      {6, {"Note Off", "4", "200"}}}));
    const CliRun result = run({"show", "--json"});
    EXPECT_EQ(result.status, cli_success);
    std::string expected =
        "[{\"channel\":\"01\",\"controller\":\"60\",\"knob\":0,\"type\":\"Note On\"},"
        "{\"channel\":\"3\",\"controller\":\"10\",\"knob\":1,\"type\":\"选择消息类型\"}";
    for (int knob = 2; knob <= 26; ++knob) {
        if (knob == 5)
            expected += ",{\"channel\":\"2\",\"controller\":\"74\",\"knob\":5,\"type\":\"Control Change\"}";
        else if (knob == 6)  // an invalid controller wipes the channel and keeps the field's text
            expected += ",{\"channel\":\"\",\"controller\":\"127\",\"knob\":6,\"type\":\"Note Off\"}";
        else
            expected += "," + default_knob_json(knob);
    }
    EXPECT_EQ(result.out, expected + "]\n");
}

TEST_F(StoreTest, ExportWritesWhatTheWindowsExportWrites)
{
    store(table_with(
        {{0, {"Note On", "01", "60"}}, {2, {"System Change", "3", "200"}}, {5, {"Control Change", "2", "74"}}}));
    const QByteArray before = stored();

    const CliRun result = run({"export", file("cli.txt")});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "已导出(exported) 300 行(lines) -> " + file("cli.txt") + "\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.console, "");
    EXPECT_EQ(stored(), before);

    // The window: start-up reads the store into the panels, then the export
    // button and the save dialog.
    {
        ConsoleCapture quiet;
        GlobalState state;
        loadCustomInfo();
        for (int i = 0; i < mapped_knob_count; ++i)
            SetupAreaData_index_config_to_UI(state, i);
        ConfigFileTransfer transfer;
        transfer.setGlobalState(&state);
        transfer.prepareExport();
        transfer.writeDocument(QUrl::fromLocalFile(QString::fromStdString(file("window.txt"))));
    }
    EXPECT_EQ(read_file("cli.txt"), read_file("window.txt"));

    QStringList lines;
    for (int knob = 0; knob <= 26; ++knob) {
        if (knob == 0)
            lines << "Note On"
                  << "01"
                  << "60";
        else if (knob == 5)
            lines << "Control Change"
                  << "2"
                  << "74";
        else if (knob == 2)  // placeholder type, channel wiped by the bad controller
            lines << "Control Change"
                  << ""
                  << "127";
        else
            lines << "Control Change"
                  << ""
                  << "127";
    }
    while (lines.size() < 300)
        lines << blank_slot;
    EXPECT_EQ(read_file("cli.txt"), lines.join(u'\n').toUtf8());
}

TEST_F(StoreTest, ExportThatCannotBeWrittenExitsOne)
{
    const std::string path = file("no/such/folder/x.txt");
    const CliRun result = run({"export", path});
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_EQ(result.out, "");
    const std::string prefix = "dialcraft-cli export: FILE \"" + path + "\" 无法写入(cannot be written): ";
    EXPECT_EQ(result.err.rfind(prefix, 0), 0u) << result.err;
    EXPECT_EQ(printed_lines(result.err).size(), 1u);
}

TEST_F(StoreTest, ImportStoresTheFileByPosition)
{
    const std::string path = write_file("in.txt", "Note On\n1\n60");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "已导入(imported) " + path + " -> 存储的旋钮表(stored table), 300 个槽(slots)\n");
    EXPECT_EQ(result.err,
              "dialcraft-cli import: 警告(warning): 文件只有 3 行, 少于旋钮 0-26 的 81 行; 缺少的旋钮跳过(the file "
              "has only 3 lines, fewer than the 81 of knobs 0-26; the knobs it lacks are skipped)\n");
    EXPECT_EQ(result.console, "");
    QStringList expected{"Note On", "1", "60"};
    while (expected.size() < 300)
        expected << blank_slot;
    EXPECT_EQ(stored(), encode_configuration(Configuration{expected}));

    const CliRun shown = run({"show", "--json"});
    EXPECT_EQ(shown.out.rfind("[{\"channel\":\"1\",\"controller\":\"60\",\"knob\":0,\"type\":\"Note On\"},", 0), 0u)
        << shown.out;
}

TEST_F(StoreTest, ImportKeepsEveryLineInItsPlace)
{
    // Knob 0 not configured (empty channel), knob 1 Note On 1/60; nothing
    // moves up into the empty lines.
    const std::string path = write_file("gaps.txt", "Control Change\n\n127\nNote On\n1\n60\n");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err.find("empty lines dropped"), std::string::npos) << result.err;
    QStringList expected = table_with({{1, {"Note On", "1", "60"}}});
    expected.resize(6);
    expected[0] = expected[1] = expected[2] = blank_slot;
    while (expected.size() < 300)
        expected << blank_slot;
    EXPECT_EQ(stored(), encode_configuration(Configuration{expected}));
}

TEST_F(StoreTest, ImportReadsCrLfLineEndsAsLineEnds)
{
    const std::string path = write_file("crlf.txt", "Note On\r\n1\r\n60\r\n");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    QStringList expected{"Note On", "1", "60"};
    while (expected.size() < 300)
        expected << blank_slot;
    EXPECT_EQ(stored(), encode_configuration(Configuration{expected}));
}

TEST_F(StoreTest, ExportThenImportGivesBackTheSameTable)
{
    store(table_with({{0, {"Control Change", "2", "74"}}, {5, {"Note On", "3", "60"}}}));
    const std::string before = run({"show", "--json"}).out;

    ASSERT_EQ(run({"export", file("round.txt")}).status, cli_success);
    store(table_with({{1, {"Note Off", "9", "9"}}}));  // anything else in between
    const CliRun imported = run({"import", file("round.txt")});
    EXPECT_EQ(imported.status, cli_success);
    EXPECT_EQ(imported.err, "");
    EXPECT_EQ(run({"show", "--json"}).out, before);
    EXPECT_EQ(before.find("\"knob\":1,\"type\":\"选择消息类型\""), before.find("\"knob\":1,"));
}

TEST_F(StoreTest, ImportWarnsWhenTypeLinesNameNoType)
{
    const std::string path = write_file("odd.txt", "Pitch Wheel\n1\n60\n");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_NE(result.err.find("dialcraft-cli import: 警告(warning): 类型行不是消息类型"), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("第(line) 1\n"), std::string::npos) << result.err;
}

TEST_F(StoreTest, ImportThatCannotBeStoredExitsOneAndKeepsTheStore)
{
    store({"Note On", "1", "60"});
    const QByteArray before = stored();
    const std::string path = write_file("in.txt", "Bend Change\n2\n3");
    CliRun result;
    {
        FileSizeLimit cap(0);
        result = run({"import", path});
    }
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_EQ(result.out, "");
    const std::string failure = "dialcraft-cli import: 无法存储旋钮表(the knob table could not be stored)\n";
    ASSERT_GE(result.err.size(), failure.size());
    EXPECT_EQ(result.err.substr(result.err.size() - failure.size()), failure);  // after the short file's warning
    EXPECT_EQ(stored(), before);
}
