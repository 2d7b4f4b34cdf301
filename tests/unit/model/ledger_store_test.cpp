// The ledger file: what it holds after recordings, across a restart, and
// what becomes of an unreadable file, a failed write and a stale lock.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <string>
#include <vector>

#include "file_size_limit.h"
#include "isolated_settings.h"
#include "model/ledger_json.h"
#include "model/ledger_store.h"
#include "model/stored_configuration.h"

using namespace dialcraft;

namespace {

QDateTime at(const char* text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
}

class LedgerStore : public ::testing::Test {
protected:
    void SetUp() override
    {
        now_ = at("2026-11-23T18:30:00Z");
        previous_clock_ = set_ledger_clock([this] { return now_; });
        previous_sink_ = set_ledger_notice_sink([this](std::string_view line) { notices_.emplace_back(line); });
    }
    void TearDown() override
    {
        set_ledger_clock(previous_clock_);
        set_ledger_notice_sink(previous_sink_);
    }

    static QByteArray file_bytes(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<absent>");
    }
    static void write_ledger_file(const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(ledger_file_path()).absolutePath());
        QFile file(ledger_file_path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    // Files beside the ledger whose names begin with "ledger.json.unreadable-".
    static QStringList set_aside_files()
    {
        return QFileInfo(ledger_file_path()).dir().entryList({QStringLiteral("ledger.json.unreadable-*")});
    }

    IsolatedSettings settings_;
    QDateTime now_;
    LedgerClock previous_clock_;
    LedgerNoticeSink previous_sink_;
    std::vector<std::string> notices_;
};

}  // namespace

TEST_F(LedgerStore, LivesBesideTheSettingsFile)
{
    EXPECT_EQ(ledger_file_path(), QFileInfo(settings_file_path()).absolutePath() + "/ledger.json");
    EXPECT_EQ(ledger_file_path(), QDir(settings_.path()).filePath(QStringLiteral("dialcraft/ledger.json")));
}

TEST_F(LedgerStore, NoFileIsAnEmptyLedgerWithoutAWord)
{
    EXPECT_EQ(read_ledger(), ControllerLedger{});
    EXPECT_TRUE(notices_.empty());
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
}

TEST_F(LedgerStore, KeepsEachSerialAndKnobApartAndSurvivesARestart)
{
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 5, "Control Change", 2, 74));
    now_ = at("2026-11-23T18:31:00Z");
    ASSERT_TRUE(record_in_ledger("4AC3CC27", 5, "Note On", 1, 60));
    now_ = at("2026-11-23T18:32:07Z");
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 0, "Bend Change", 16, 127));
    // A later programming of the same knob replaces what was held.
    now_ = at("2026-11-23T18:33:00Z");
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 5, "Note Off", 3, 10));

    ControllerLedger expected;
    expected.controllers["4AC1CC27"][0] = {"Bend Change", 16, 127, at("2026-11-23T18:32:07Z")};
    expected.controllers["4AC1CC27"][5] = {"Note Off", 3, 10, at("2026-11-23T18:33:00Z")};
    expected.controllers["4AC3CC27"][5] = {"Note On", 1, 60, at("2026-11-23T18:31:00Z")};
    // A new process reads only the file.
    EXPECT_EQ(read_ledger(), expected);
    EXPECT_EQ(file_bytes(ledger_file_path()), encode_ledger(expected));
    EXPECT_EQ(read_ledger().held("4AC3CC27", 0), nullptr);
    EXPECT_TRUE(notices_.empty());
}

TEST_F(LedgerStore, TheFileIsIndentedJsonWithUtcTimes)
{
    now_ = QDateTime::fromString(QStringLiteral("2026-11-23T20:30:00.750+02:00"), Qt::ISODate);
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 12, "Bend Change", 16, 127));
    EXPECT_EQ(file_bytes(ledger_file_path()),
              "{\n"
              "  \"controllers\": {\n"
              "    \"4AC1CC27\": [\n"
              "      {\n"
              "        \"channel\": 16,\n"
              "        \"controller\": 127,\n"
              "        \"knob\": 12,\n"
              "        \"type\": \"Bend Change\",\n"
              "        \"written\": \"2026-11-23T18:30:00Z\"\n"
              "      }\n"
              "    ]\n"
              "  },\n"
              "  \"version\": 1\n"
              "}\n");
}

TEST_F(LedgerStore, AnUnreadableFileIsSetAsideWithOneLineAndReadingGoesOn)
{
    const QByteArray garbage = "{\"controllers\": {\"4AC1CC27\": [";
    write_ledger_file(garbage);
    EXPECT_EQ(read_ledger(), ControllerLedger{});
    const QStringList aside = set_aside_files();
    ASSERT_EQ(aside.size(), 1);
    const QString aside_path = QFileInfo(ledger_file_path()).dir().filePath(aside[0]);
    EXPECT_EQ(file_bytes(aside_path), garbage);
    EXPECT_FALSE(QFile::exists(ledger_file_path()));
    ASSERT_EQ(notices_.size(), 1u);
    const std::string start = "dialcraft: 无法读取的控制器记录已移至(unreadable ledger moved to) " +
                              aside_path.toStdString() + " (";
    EXPECT_EQ(notices_[0].rfind(start, 0), 0u) << notices_[0];
    EXPECT_TRUE(notices_[0].ends_with(")\n"));

    // The next recording starts a fresh ledger.
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 1, "Note On", 1, 1));
    EXPECT_NE(read_ledger().held("4AC1CC27", 1), nullptr);
    EXPECT_EQ(notices_.size(), 1u);
}

TEST_F(LedgerStore, ContentsOutsideTheFamilyOrRangeAreUnreadable)
{
    const char* files[] = {
        R"({"controllers":{"4AC1CC28":[]},"version":1})",
        R"({"controllers":{"4AC1CC27":[{"channel":0,"controller":1,"knob":1,"type":"Note On","written":"2026-11-23T18:30:00Z"}]},"version":1})",
        R"({"controllers":{"4AC1CC27":[{"channel":1,"controller":128,"knob":1,"type":"Note On","written":"2026-11-23T18:30:00Z"}]},"version":1})",
        R"({"controllers":{"4AC1CC27":[{"channel":1,"controller":1,"knob":1,"type":"System Change","written":"2026-11-23T18:30:00Z"}]},"version":1})",
        R"({"controllers":{"4AC1CC27":[{"channel":1,"controller":1,"knob":1,"type":"Note On","written":"yesterday"}]},"version":1})",
        R"({"controllers":{},"version":2})",
        R"([])",
    };
    for (const char* text : files) {
        QString error;
        EXPECT_FALSE(decode_ledger(text, &error)) << text;
        EXPECT_FALSE(error.isEmpty()) << text;
    }
    EXPECT_TRUE(decode_ledger(R"({"controllers":{},"version":1})"));
}

TEST_F(LedgerStore, RecordingOverAnUnreadableFileSetsItAsideFirst)
{
    write_ledger_file("not json at all");
    ASSERT_TRUE(record_in_ledger("4AC2CC27", 3, "Control Change", 2, 74));
    EXPECT_EQ(set_aside_files().size(), 1);
    EXPECT_EQ(notices_.size(), 1u);
    EXPECT_NE(read_ledger().held("4AC2CC27", 3), nullptr);
}

TEST_F(LedgerStore, AFailedWriteKeepsThePreviousLedger)
{
    ASSERT_TRUE(record_in_ledger("4AC1CC27", 5, "Control Change", 2, 74));
    const QByteArray before = file_bytes(ledger_file_path());
    {
        // Room for the lock file, not for the ledger.
        const FileSizeLimit limit(150);
        EXPECT_FALSE(record_in_ledger("4AC1CC27", 6, "Note On", 1, 60));
    }
    EXPECT_EQ(file_bytes(ledger_file_path()), before);
    ASSERT_EQ(notices_.size(), 1u);
    const std::string start =
        "dialcraft: 控制器记录无法写入, 保留原来的(the ledger could not be written; the previous "
        "one is kept) " +
        ledger_file_path().toStdString() + " (";
    EXPECT_EQ(notices_[0].rfind(start, 0), 0u) << notices_[0];
    // Nothing but the ledger and its lock's leftovers: no temporary file stays.
    EXPECT_EQ(QFileInfo(ledger_file_path()).dir().entryList({QStringLiteral("ledger.json*")}),
              QStringList{QStringLiteral("ledger.json")});
}

TEST_F(LedgerStore, ALockLeftByADeadProcessIsTakenOver)
{
    QDir().mkpath(QFileInfo(ledger_file_path()).absolutePath());
    {
        // The lock file of a process that no longer runs: pid, program, host.
        QFile lock(ledger_file_path() + ".lock");
        ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
        lock.write("2147483646\ndialcraft-cli\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    }
    EXPECT_TRUE(record_in_ledger("4AC1CC27", 5, "Control Change", 2, 74));
    EXPECT_NE(read_ledger().held("4AC1CC27", 5), nullptr);
    EXPECT_FALSE(QFile::exists(ledger_file_path() + ".lock"));
}
