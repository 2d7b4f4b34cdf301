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

TEST_F(StoreTest, ImportStoresTheFileByTheImportRules)
{
    const std::string path = write_file("in.txt", "Note On\n1\n60");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "已导入(imported) " + path + " -> 存储的旋钮表(stored table), 300 个槽(slots)\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.console, "");
    QStringList expected{"Note On", "1", "60"};
    while (expected.size() < 300)
        expected << blank_slot;
    EXPECT_EQ(stored(), encode_configuration(Configuration{expected}));

    const CliRun shown = run({"show", "--json"});
    EXPECT_EQ(shown.out.rfind("[{\"channel\":\"1\",\"controller\":\"60\",\"knob\":0,\"type\":\"Note On\"},", 0), 0u)
        << shown.out;
}

TEST_F(StoreTest, ImportWarnsAboutEveryEmptyLineThatShiftsSlots)
{
    const std::string path = write_file("gaps.txt", "\nNote On\n\n\n1\n60\n\n");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err,
              "dialcraft-cli import: 警告(warning): 3 个空行被丢弃, 其后的旋钮前移(empty lines dropped; the knobs "
              "after them shift): 第(line) 1, 3, 4\n");
    QStringList expected{"Note On", "1", "60"};
    while (expected.size() < 300)
        expected << blank_slot;
    EXPECT_EQ(stored(), encode_configuration(Configuration{expected}));
}

TEST_F(StoreTest, ImportWithCrLfLineEndsWarnsThatTheyDoNotSplit)
{
    const std::string path = write_file("crlf.txt", "Note On\r\n1\r\n60\r\n");
    const CliRun result = run({"import", path});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err,
              "dialcraft-cli import: 警告(warning): CR LF 行尾不分行, 这些行合为一个槽(CR LF line ends do not "
              "split; those lines become one slot)\n");
    QStringList expected{"Note On\r\n1\r\n60\r\n"};
    while (expected.size() < 300)
        expected << blank_slot;
    EXPECT_EQ(stored(), encode_configuration(Configuration{expected}));
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
    EXPECT_EQ(result.err, "dialcraft-cli import: 无法存储旋钮表(the knob table could not be stored)\n");
    EXPECT_EQ(stored(), before);
}
