// The ledger from the command line: set and apply record what the
// controller accepted, show --controller compares it with the stored table,
// apply --changed programs only what differs, export --controller writes it.
#include <QDateTime>
#include <QDir>

#include "cli_fixture.h"
#include "model/ledger_store.h"

using namespace dialcraft;

namespace {

const QString first_time = QStringLiteral("2026-11-23T18:30:00Z");

class LedgerCliTest : public CliTest {
protected:
    void SetUp() override
    {
        CliTest::SetUp();
        now_ = QDateTime::fromString(first_time, Qt::ISODate);
        previous_clock_ = set_ledger_clock([this] { return now_; });
    }
    void TearDown() override { set_ledger_clock(previous_clock_); }

    void advance_clock(int seconds) { now_ = now_.addSecs(seconds); }

    static QByteArray ledger_bytes()
    {
        QFile file(ledger_file_path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QDateTime now_;
    LedgerClock previous_clock_;
};

std::string ok_line(int knob, const std::string& setting, const std::string& port = "4AC1CC27 MIDI 1")
{
    return "旋钮(knob) " + std::to_string(knob) + ": " + setting + " -> " + port + ", 已接受(accepted) 5/5, 成功(ok)\n";
}

// How many lines of `text` end in `ending`.
int lines_ending(const std::string& text, const std::string& ending)
{
    int count = 0;
    for (const std::string& line : printed_lines(text))
        count += line.ends_with(ending);
    return count;
}

}  // namespace

TEST_F(LedgerCliTest, SetRecordsTheKnobInTheLedgerFile)
{
    plug("4AC1CC27");
    const QByteArray table_before = stored();
    const CliRun result = run({"set", "5", "cc", "2", "74"});
    ASSERT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(ledger_file_path(), QDir(settings_.path()).filePath(QStringLiteral("dialcraft/ledger.json")));
    EXPECT_EQ(ledger_bytes(),
              "{\n"
              "  \"controllers\": {\n"
              "    \"4AC1CC27\": [\n"
              "      {\n"
              "        \"channel\": 2,\n"
              "        \"controller\": 74,\n"
              "        \"knob\": 5,\n"
              "        \"type\": \"Control Change\",\n"
              "        \"written\": \"2026-11-23T18:30:00Z\"\n"
              "      }\n"
              "    ]\n"
              "  },\n"
              "  \"version\": 1\n"
              "}\n");
    // The stored table is a separate thing and stays as it was.
    EXPECT_EQ(stored(), table_before);
}

TEST_F(LedgerCliTest, ShowControllerPutsTheLedgerBesideTheStoredTable)
{
    plug("4AC1CC27");
    store(
        {"Note On", "1", "60", "Note On", "1", "61", "", "", "", "", "", "", "", "", "", "Control Change", "2", "74"});
    ASSERT_EQ(run({"set", "5", "cc", "2", "74"}).status, cli_success);
    advance_clock(60);
    ASSERT_EQ(run({"set", "1", "note-on", "1", "62"}).status, cli_success);
    advance_clock(60);
    ASSERT_EQ(run({"set", "2", "bend", "3", "0"}).status, cli_success);

    const CliRun result = run({"show", "--controller", "4ac1cc27"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err, "");
    const std::vector<std::string> lines = printed_lines(result.out);
    ASSERT_EQ(lines.size(), 28u) << result.out;
    EXPECT_EQ(lines[0],
              "旋钮(knob)  类型(type)      通道(channel)  控制器号(controller)  4AC1CC27               "
              "写入时间(written)     比较(compare)\n");
    EXPECT_EQ(lines[1],
              "0           Note On         1              60                    -                      "
              "-                     未写入(never written)\n");
    EXPECT_EQ(lines[2],
              "1           Note On         1              61                    Note On, 1, 62         "
              "2026-11-23T18:31:00Z  不同(differs)\n");
    // Knob 2 was never configured in the table, but the controller holds a setting.
    EXPECT_EQ(lines[3],
              "2           选择消息类型    -              127                   Bend Change, 3, 0      "
              "2026-11-23T18:32:00Z  不同(differs)\n");
    EXPECT_EQ(lines[6],
              "5           Control Change  2              74                    Control Change, 2, 74  "
              "2026-11-23T18:30:00Z  相同(same)\n");
    EXPECT_EQ(lines[27],
              "26          选择消息类型    -              127                   -                      "
              "-                     未写入(never written)\n");
    EXPECT_EQ(lines_ending(result.out, "未写入(never written)\n"), 24);
}

TEST_F(LedgerCliTest, ShowControllerJson)
{
    plug("4AC1CC27");
    store({"Note On", "1", "60", "", "", "", "Control Change", "2", "75"});
    ASSERT_EQ(run({"set", "2", "cc", "2", "74"}).status, cli_success);
    const CliRun result = run({"show", "--json", "--controller=4AC1CC27"});
    EXPECT_EQ(result.status, cli_success);
    std::string expected =
        "[{\"channel\":\"1\",\"compare\":\"never written\",\"controller\":\"60\",\"held\":null,\"knob\":0,"
        "\"type\":\"Note On\"},"
        "{\"channel\":\"\",\"compare\":\"never written\",\"controller\":\"127\",\"held\":null,\"knob\":1,"
        "\"type\":\"选择消息类型\"},"
        "{\"channel\":\"2\",\"compare\":\"differs\",\"controller\":\"75\",\"held\":{\"channel\":2,\"controller\":74,"
        "\"type\":\"Control Change\",\"written\":\"2026-11-23T18:30:00Z\"},\"knob\":2,\"type\":\"Control Change\"}";
    for (int knob = 3; knob <= 26; ++knob)
        expected += ",{\"channel\":\"\",\"compare\":\"never written\",\"controller\":\"127\",\"held\":null,\"knob\":" +
                    std::to_string(knob) + ",\"type\":\"选择消息类型\"}";
    EXPECT_EQ(result.out, expected + "]\n");
}

TEST_F(LedgerCliTest, ARefusedProgrammingRecordsNothing)
{
    const int destination = plug("4AC1CC27");
    sim.set_send_status(destination, -1);
    const CliRun result = run({"set", "5", "cc", "2", "74"});
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
}

TEST_F(LedgerCliTest, ApplyChangedSendsExactlyTheDifferingKnobs)
{
    plug("4AC1CC27");
    const std::string path = write_file("four.txt", knob_file({{0, {"Note On", "1", "60"}},
                                                               {3, {"Control Change", "2", "74"}},
                                                               {7, {"Bend Change", "16", "127"}},
                                                               {9, {"Note Off", "4", "10"}}}));
    ASSERT_EQ(run({"apply", path}).status, cli_success);
    sim.clear_sent();

    // Unchanged: nothing is sent and the run succeeds.
    CliRun result = run({"apply", path, "--changed"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "已设置(programmed) 0, 失败(failed) 0, 跳过(skipped) 23, 已相同(unchanged) 4\n");
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(sim.sent().empty());

    // Knob 3 is changed in the file and knob 12 is new: only those two go out.
    const std::string changed = write_file("changed.txt", knob_file({{0, {"Note On", "1", "60"}},
                                                                     {3, {"Control Change", "2", "75"}},
                                                                     {7, {"Bend Change", "16", "127"}},
                                                                     {9, {"Note Off", "04", "10"}},
                                                                     {12, {"Note On", "1", "1"}}}));
    result = run({"apply", "--changed", changed});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, ok_line(3, "Control Change, 通道(channel) 2, 控制器号(controller) 75") +
                              ok_line(12, "Note On, 通道(channel) 1, 控制器号(controller) 1") +
                              "已设置(programmed) 2, 失败(failed) 0, 跳过(skipped) 22, 已相同(unchanged) 3\n");
    Messages expected = frame(0x03, 0xB1, 75);
    const Messages twelve = frame(0x0C, 0x90, 1);
    expected.insert(expected.end(), twelve.begin(), twelve.end());
    EXPECT_EQ(sent_to("4AC1CC27 MIDI 1"), expected);
}

TEST_F(LedgerCliTest, ApplyChangedLooksAtTheTargetControllersLedgerOnly)
{
    plug("4AC1CC27");
    plug("4AC3CC27");
    const std::string path = write_file("one.txt", knob_file({{3, {"Control Change", "2", "74"}}}));
    ASSERT_EQ(run({"apply", path, "--serial", "4AC1CC27"}).status, cli_success);
    sim.clear_sent();
    const CliRun result = run({"apply", path, "--serial", "4AC3CC27", "--changed", "--json"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_NE(result.out.find("\"programmed\":1"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\"unchanged\":[]"), std::string::npos) << result.out;
    EXPECT_EQ(sent_to("4AC3CC27 MIDI 1"), frame(0x03, 0xB1, 74));
}

TEST_F(LedgerCliTest, ExportControllerRoundTripsThroughImport)
{
    plug("4AC1CC27");
    ASSERT_EQ(run({"set", "5", "cc", "2", "74"}).status, cli_success);
    ASSERT_EQ(run({"set", "0", "note-on", "1", "060"}).status, cli_success);
    ASSERT_EQ(run({"set", "26", "bend", "16", "127"}).status, cli_success);

    const CliRun exported = run({"export", "--controller", "4AC1CC27", file("held.txt")});
    EXPECT_EQ(exported.status, cli_success);
    EXPECT_EQ(exported.err, "");
    QStringList lines = initialSettings();
    lines[0] = "Note On";
    lines[1] = "1";
    lines[2] = "60";
    lines[15] = "Control Change";
    lines[16] = "2";
    lines[17] = "74";
    lines[78] = "Bend Change";
    lines[79] = "16";
    lines[80] = "127";
    EXPECT_EQ(read_file("held.txt"), lines.join(u'\n').toUtf8());

    ASSERT_EQ(run({"import", file("held.txt")}).status, cli_success);
    const CliRun shown = run({"show", "--controller", "4AC1CC27"});
    EXPECT_EQ(lines_ending(shown.out, "相同(same)\n"), 3) << shown.out;
    EXPECT_EQ(lines_ending(shown.out, "未写入(never written)\n"), 24) << shown.out;

    // And applying it with --changed sends nothing.
    sim.clear_sent();
    const CliRun applied = run({"apply", "--changed", file("held.txt")});
    EXPECT_EQ(applied.status, cli_success);
    EXPECT_EQ(applied.out, "已设置(programmed) 0, 失败(failed) 0, 跳过(skipped) 24, 已相同(unchanged) 3\n");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(LedgerCliTest, ExportOfAControllerTheLedgerDoesNotKnowFails)
{
    const CliRun result = run({"export", "--controller", "4AC2CC27", file("none.txt")});
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_EQ(result.err, "dialcraft-cli export: 控制器记录里没有 4AC2CC27(the ledger holds nothing for 4AC2CC27)\n");
    EXPECT_FALSE(QFile::exists(QString::fromStdString(file("none.txt"))));
}

TEST_F(LedgerCliTest, AnUnreadableLedgerIsSetAsideWithOneLine)
{
    plug("4AC1CC27");
    QDir().mkpath(QFileInfo(ledger_file_path()).absolutePath());
    {
        QFile file(ledger_file_path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{not json");
    }
    const CliRun result = run({"show", "--controller", "4AC1CC27"});
    EXPECT_EQ(result.status, cli_success);
    const std::string prefix = "dialcraft: 无法读取的控制器记录已移至(unreadable ledger moved to) " +
                               ledger_file_path().toStdString() + ".unreadable-";
    EXPECT_EQ(result.err.rfind(prefix, 0), 0u) << result.err;
    EXPECT_EQ(printed_lines(result.err).size(), 1u);
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
    EXPECT_EQ(lines_ending(result.out, "未写入(never written)\n"), 27);
}

TEST_F(LedgerCliTest, ApplyRecordsOnlyTheKnobsThatWentThrough)
{
    plug("4AC1CC27");
    const std::string path = write_file("bad.txt", knob_file({{3, {"Control Change", "2", "74"}},
                                                              {4, {"Control Change", "0", "64"}}}));
    ASSERT_EQ(run({"apply", path}).status, cli_failed);
    const ControllerLedger ledger = read_ledger();
    ASSERT_EQ(ledger.controllers.size(), 1u);
    const HeldKnobs& knobs = ledger.controllers.at("4AC1CC27");
    ASSERT_EQ(knobs.size(), 1u);
    EXPECT_EQ(knobs.at(3), (HeldSetting{"Control Change", 2, 74, QDateTime::fromString(first_time, Qt::ISODate)}));
}
