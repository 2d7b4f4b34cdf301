#include <gtest/gtest.h>

#include "qt_printers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>
#include <unistd.h>

#include "console_capture.h"
#include "isolated_settings.h"
#include "model/config_file_transfer.h"
#include "model/configuration.h"
#include "model/global_state.h"
#include "model/handover.h"
#include "model/list_notation.h"

using namespace dialcraft;

namespace {

const QString blank = QStringLiteral("                    ");

QStringList blanks(int n)
{
    return QStringList(n, blank);
}

class ConfigFileTransferTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir_.isValid());
        QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft")).remove(QStringLiteral("configurationKey"));
        configuration = Configuration{initialSettings()};
        device_connect_state_retval.assign(36, 0);
        transfer_.setGlobalState(&state_);
    }
    void TearDown() override
    {
        QCoreApplication::sendPostedEvents();
        configuration = Configuration{initialSettings()};
        device_connect_state_retval.assign(36, 0);
    }

    QUrl write_file(const QString& name, const QByteArray& bytes)
    {
        QFile f(dir_.filePath(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return QUrl::fromLocalFile(f.fileName());
    }
    QByteArray read_file(const QString& name) const
    {
        QFile f(dir_.filePath(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
    QUrl url_of(const QString& name) const { return QUrl::fromLocalFile(dir_.filePath(name)); }

    // The open dialog's completion, then the event loop; returns the lines of both.
    struct ImportOutput {
        QStringList during, after;
    };
    ImportOutput import_file(const QUrl& url)
    {
        ImportOutput out;
        {
            ConsoleCapture capture;
            transfer_.importFile(url);
            out.during = capture.finishLines();
        }
        ConsoleCapture capture;
        QCoreApplication::sendPostedEvents();
        out.after = capture.finishLines();
        return out;
    }

    void set_knob(int i, const QString& type, const QString& channel, const QString& controller)
    {
        state_.record(i)->set_message_type_menu_string(type);
        state_.record(i)->set_message_channel_menu_string(channel);
        state_.record(i)->set_message_controller_number_code_string(controller);
    }
    void expect_knob(const GlobalState& state, int i, const QString& type, const QString& channel,
                     const QString& controller)
    {
        EXPECT_EQ(state.record(i)->message_type_menu_string(), type) << "knob " << i;
        EXPECT_EQ(state.record(i)->message_channel_menu_string(), channel) << "knob " << i;
        EXPECT_EQ(state.record(i)->message_controller_number_code_string(), controller) << "knob " << i;
    }

    static QStringList accessing_lines()
    {
        QStringList lines;
        for (int i = 0; i < 27; ++i)
            lines.append(QStringLiteral("Accessing configuration.settings at index: %1").arg(i));
        return lines;
    }

    IsolatedSettings isolated_settings_;
    QTemporaryDir dir_;
    GlobalState state_;
    ConfigFileTransfer transfer_;
};

TEST_F(ConfigFileTransferTest, StartsIdleWithDocument123)
{
    ConfigFileTransfer fresh;
    EXPECT_EQ(fresh.document.text, "123");
    EXPECT_EQ(fresh.documentText(), "123");
    EXPECT_EQ(fresh.fileURLString(), "");
    EXPECT_EQ(fresh.globalState(), nullptr);
}

TEST_F(ConfigFileTransferTest, FreshTableExportsNinetyBlankLines)
{
    QSignalSpy changed(&transfer_, &ConfigFileTransfer::documentTextChanged);
    ConsoleCapture out;
    transfer_.updateDocument();
    EXPECT_EQ(out.finish(), "");
    EXPECT_EQ(changed.count(), 1);
    const QByteArray bytes = transfer_.document.toBytes();
    EXPECT_EQ(bytes, QByteArray(20, ' ').append(QByteArray("\n").append(20, ' ').repeated(89)));
    EXPECT_EQ(bytes.count('\n'), 89);
    EXPECT_EQ(bytes.size(), 90 * 20 + 89);
}

TEST_F(ConfigFileTransferTest, UpdateDocumentReplacesThePlaceholderEverywhere)
{
    configuration.settings = {QStringLiteral("选择消息类型"), "", QStringLiteral("x选择消息类型y选择消息类型"),
                              "Note On"};
    transfer_.updateDocument();
    EXPECT_EQ(transfer_.document.text, "Control Change\n\nxControl ChangeyControl Change\nNote On");
}

TEST_F(ConfigFileTransferTest, ExportPressCopiesKnobs0To26AndBuildsTheText)
{
    set_knob(5, "Control Change", "2", "74");
    set_knob(26, "Note Off", "", "05");
    set_knob(27, "Note On", "1", "1");  // never mapped
    ConsoleCapture out;
    transfer_.prepareExport();
    EXPECT_EQ(out.finishLines(), accessing_lines());
    EXPECT_EQ(state_.fullText(), QStringLiteral("导出文件:\n导出配置文件"));

    QStringList lines;
    for (int i = 0; i < 27; ++i) {
        if (i == 5)
            lines << "Control Change"
                  << "2"
                  << "74";
        else if (i == 26)
            lines << "Note Off"
                  << ""
                  << "05";
        else
            lines << "Control Change"
                  << "16"
                  << "127";  // never given a type
    }
    lines << blanks(9);
    EXPECT_EQ(transfer_.document.text, lines.join('\n'));
    EXPECT_EQ(transfer_.document.text.split('\n').mid(15, 3), (QStringList{"Control Change", "2", "74"}));
    // The table itself keeps the placeholder; only the text replaces it.
    EXPECT_EQ(configuration.settings[0], QStringLiteral("选择消息类型"));
    EXPECT_EQ(configuration.settings.size(), 90);
}

TEST_F(ConfigFileTransferTest, ExportCompletedWritesTheBytesAndPrintsTheLocation)
{
    {
        ConsoleCapture out;
        transfer_.prepareExport();
        out.finish();
    }
    ConsoleCapture out;
    EXPECT_TRUE(transfer_.writeDocument(url_of("knobs.txt")));
    EXPECT_EQ(out.finishLines(), QStringList{url_of("knobs.txt").toString(QUrl::FullyEncoded)});
    const QByteArray bytes = read_file("knobs.txt");
    EXPECT_EQ(bytes, transfer_.document.text.toUtf8());
    EXPECT_FALSE(bytes.endsWith('\n'));
    EXPECT_FALSE(bytes.startsWith("\xef\xbb\xbf"));
    EXPECT_EQ(bytes.count('\n'), 89);
    // Export never writes the preferences store.
    EXPECT_FALSE(QSettings("dialcraft", "dialcraft").contains("configurationKey"));
}

TEST_F(ConfigFileTransferTest, ExportReplacesAnExistingFile)
{
    write_file("knobs.txt", QByteArray(5000, 'x'));
    configuration.settings = {"a", "b"};
    transfer_.updateDocument();
    ConsoleCapture out;
    transfer_.writeDocument(url_of("knobs.txt"));
    out.finish();
    EXPECT_EQ(read_file("knobs.txt"), QByteArray("a\nb"));
}

TEST_F(ConfigFileTransferTest, ExportLocationWithBlanksIsPrintedAsAUrl)
{
    ASSERT_TRUE(QDir(dir_.path()).mkdir("my knobs"));
    transfer_.updateDocument();
    ConsoleCapture out;
    transfer_.writeDocument(url_of("my knobs/中.txt"));
    EXPECT_EQ(QString::fromStdString(out.finish()), "file://" + dir_.path() + "/my%20knobs/%E4%B8%AD.txt\n");
}

TEST_F(ConfigFileTransferTest, ExportThatCannotWritePrintsTheErrorAndChangesNothingElse)
{
    transfer_.document.text = "abc";
    ConsoleCapture out;
    QString failure;
    EXPECT_FALSE(transfer_.writeDocument(url_of("missing folder/knobs.txt"), &failure));
    const QStringList lines = out.finishLines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith("Failed to write file: ")) << lines[0].toStdString();
    EXPECT_GT(lines[0].size(), QString("Failed to write file: ").size());
    EXPECT_EQ(lines[0], "Failed to write file: " + failure);
    EXPECT_FALSE(QFile::exists(dir_.filePath("missing folder/knobs.txt")));
}

TEST_F(ConfigFileTransferTest, DialogErrorsArePrintedAsGiven)
{
    {
        ConsoleCapture out;
        transfer_.saveFailed("The disk is full.");
        EXPECT_EQ(out.finish(), "The disk is full.\n");
    }
    transfer_.prepareImport();
    configuration.settings = {"kept"};
    {
        ConsoleCapture out;
        transfer_.openFailed(QStringLiteral("无法打开"));
        EXPECT_EQ(QString::fromStdString(out.finish()), QStringLiteral("无法打开\n"));
    }
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(configuration.settings, QStringList{"kept"});
    EXPECT_EQ(transfer_.fileURLString(), "");
}

TEST_F(ConfigFileTransferTest, ImportPressShowsTheStatusText)
{
    ConsoleCapture out;
    transfer_.prepareImport();
    EXPECT_EQ(out.finish(), "");
    EXPECT_EQ(state_.fullText(), QStringLiteral("导入文件:\n导入配置文件"));
}

TEST_F(ConfigFileTransferTest, ThreeLineFileFillsUpTo300)
{
    const QUrl url = write_file("three.txt", "Note On\n1\n60");
    const ImportOutput out = import_file(url);
    EXPECT_EQ(transfer_.fileURLString(), url.toString(QUrl::FullyEncoded));
    EXPECT_EQ(out.during,
              (QStringList{url.toString(QUrl::FullyEncoded), "PPP Loaded settings: " + list_notation(blanks(90))}));
    EXPECT_EQ(out.after, (QStringList{"Expanded configuration.settings to 300 elements",
                                      "Updated configuration.settings count: 300",
                                      R"(First 10 elements: ["Note On", "1", "60", ")" + blank + R"(", ")" + blank +
                                          R"(", ")" + blank + R"(", ")" + blank + R"(", ")" + blank + R"(", ")" +
                                          blank + R"(", ")" + blank + R"("])"}));
    EXPECT_EQ(configuration.settings, QStringList({"Note On", "1", "60"}) + blanks(297));
    EXPECT_EQ(transfer_.document.text, "Note On\n1\n60");
}

TEST_F(ConfigFileTransferTest, FileOf400LinesIsTakenWhole)
{
    QStringList lines;
    for (int i = 0; i < 400; ++i)
        lines.append(QStringLiteral("line %1").arg(i));
    const ImportOutput out = import_file(write_file("many.txt", lines.join('\n').toUtf8() + "\n"));
    EXPECT_EQ(out.after, (QStringList{"Updated configuration.settings count: 400",
                                      "First 10 elements: " + list_notation(lines.mid(0, 10))}));
    EXPECT_EQ(configuration.settings, lines);
}

TEST_F(ConfigFileTransferTest, EmptyFileGives300BlankSlots)
{
    configuration.settings[0] = "old";
    const ImportOutput out = import_file(write_file("empty.txt", ""));
    EXPECT_EQ(out.after, (QStringList{"Expanded configuration.settings to 300 elements",
                                      "Updated configuration.settings count: 300",
                                      "First 10 elements: " + list_notation(blanks(10))}));
    EXPECT_EQ(configuration.settings, blanks(300));
}

TEST_F(ConfigFileTransferTest, CrLfFileBecomesOneSlot)
{
    const QByteArray bytes = "Note On\r\n1\r\n60\r\n";
    const ImportOutput out = import_file(write_file("crlf.txt", bytes));
    ASSERT_EQ(configuration.settings.size(), 300);
    EXPECT_EQ(configuration.settings[0], "Note On\r\n1\r\n60\r\n");
    EXPECT_EQ(configuration.settings.mid(1), blanks(299));
    ASSERT_EQ(out.after.size(), 3);
    EXPECT_EQ(out.after[0], "Expanded configuration.settings to 300 elements");
    EXPECT_EQ(out.after[1], "Updated configuration.settings count: 300");
    EXPECT_EQ(out.after[2], "First 10 elements: " + list_notation(QStringList{bytes} + blanks(9)));
    EXPECT_TRUE(out.after[2].startsWith(R"(First 10 elements: ["Note On\r\n1\r\n60\r\n", ")"));
}

TEST_F(ConfigFileTransferTest, SplittingRules)
{
    struct Case {
        const char* text;
        QStringList pieces;
    };
    const Case cases[] = {
        {"\n\na\n\n\nb\n", {"a", "b"}},  // leading, repeated, trailing line feeds
        {"a\rb\nc", {"a\rb", "c"}},      // a lone CR stays inside its slot
        {"a\r\n\nb", {"a\r\n", "b"}},    // CR LF does not split, the next LF does
        {"\r\n\n", {"\r\n"}},
        {"\r\r\nx\ny", {"\r\r\nx", "y"}},
        {" a \n\t\n", {" a ", "\t"}},  // no trimming
        {"\n", {}},
    };
    for (const Case& c : cases) {
        transfer_.document.text = QString::fromUtf8(c.text);
        ConsoleCapture out;
        transfer_.reverseUpdateDocument();
        out.finish();
        EXPECT_EQ(configuration.settings.mid(0, c.pieces.size()), c.pieces) << c.text;
        EXPECT_EQ(configuration.settings.mid(c.pieces.size()), blanks(300 - int(c.pieces.size()))) << c.text;
    }
}

TEST_F(ConfigFileTransferTest, ShortTableIsListedWhole)
{
    QStringList lines;
    for (int i = 0; i < 305; ++i)
        lines.append(QString::number(i));
    transfer_.document.text = lines.join('\n');
    ConsoleCapture out;
    transfer_.reverseUpdateDocument();
    const QStringList printed = out.finishLines();
    ASSERT_EQ(printed.size(), 2);
    EXPECT_EQ(printed[1], R"(First 10 elements: ["0", "1", "2", "3", "4", "5", "6", "7", "8", "9"])");
}

TEST_F(ConfigFileTransferTest, ImportRefreshesRecordsFromTheOldTableAndAppliesTheFileLater)
{
    configuration.settings = blanks(90);
    configuration.settings[0] = "Bend Change";
    configuration.settings[1] = "9";
    configuration.settings[2] = "99";
    set_knob(1, "Note On", "3", "33");
    device_connect_state_retval[9] = 5;
    device_connect_state_retval[10] = 7;
    device_connect_state_retval[11] = 7;
    device_connect_state_retval[12] = 5;
    const QStringList old_table = configuration.settings;
    const QUrl first = write_file("first.txt", "Note Off\n4\n44\nNote On\n5\n55");

    {
        ConsoleCapture out;
        transfer_.importFile(first);
        EXPECT_EQ(out.finishLines(), (QStringList{first.toString(QUrl::FullyEncoded),
                                                  "PPP Loaded settings: " + list_notation(old_table)}));
    }
    // Right after the completion handler: the records show the old table.
    EXPECT_EQ(configuration.settings, old_table);
    expect_knob(state_, 0, "Bend Change", "9", "99");
    expect_knob(state_, 1, "选择消息类型", "", "33");  // blank slots: placeholder, channel emptied twice
    EXPECT_EQ(transfer_.document.text, "123");
    EXPECT_EQ(device_connect_state_retval[10], 0);
    EXPECT_EQ(device_connect_state_retval[11], 0);
    EXPECT_EQ(device_connect_state_retval[9], 5);
    EXPECT_EQ(device_connect_state_retval[12], 5);

    {
        ConsoleCapture out;
        QCoreApplication::processEvents();
        EXPECT_EQ(out.finishLines().size(), 3);
    }
    EXPECT_EQ(configuration.settings.mid(0, 6), (QStringList{"Note Off", "4", "44", "Note On", "5", "55"}));
    EXPECT_EQ(configuration.settings.size(), 300);
    EXPECT_EQ(transfer_.document.text, "Note Off\n4\n44\nNote On\n5\n55");
    // The records are not touched by the queued block.
    expect_knob(state_, 0, "Bend Change", "9", "99");

    // A second import shows, in the records, the slots of the first file.
    const QUrl second = write_file("second.txt", "Control Change\n16\n127");
    const ImportOutput out = import_file(second);
    EXPECT_EQ(out.during[1],
              "PPP Loaded settings: " +
                  list_notation(QStringList({"Note Off", "4", "44", "Note On", "5", "55"}) + blanks(294)));
    expect_knob(state_, 0, "Note Off", "4", "44");
    expect_knob(state_, 1, "Note On", "5", "55");
    EXPECT_EQ(configuration.settings.mid(0, 3), (QStringList{"Control Change", "16", "127"}));
}

TEST_F(ConfigFileTransferTest, ExportedPlaceholderComesBackAsControlChange)
{
    set_knob(2, "选择消息类型", "7", "70");
    {
        ConsoleCapture out;
        transfer_.prepareExport();
        transfer_.writeDocument(url_of("out.txt"));
        out.finish();
    }
    GlobalState other;
    ConfigFileTransfer panel;
    panel.setGlobalState(&other);
    configuration = Configuration{initialSettings()};
    ConsoleCapture out;
    panel.importFile(url_of("out.txt"));
    QCoreApplication::sendPostedEvents();
    panel.importFile(url_of("out.txt"));  // the refresh that shows the file
    QCoreApplication::sendPostedEvents();
    out.finish();
    expect_knob(other, 2, "Control Change", "7", "70");
    expect_knob(other, 0, "Control Change", "16", "127");
}

TEST_F(ConfigFileTransferTest, EmptyChannelLineIsDroppedAndLaterKnobsShift)
{
    set_knob(0, "Note On", "1", "60");
    set_knob(1, "Note Off", "", "61");
    set_knob(2, "Bend Change", "3", "62");
    for (int i = 3; i < 27; ++i)
        set_knob(i, "Note On", "4", "63");
    {
        ConsoleCapture out;
        transfer_.prepareExport();
        transfer_.writeDocument(url_of("gap.txt"));
        out.finish();
    }
    EXPECT_TRUE(read_file("gap.txt").startsWith("Note On\n1\n60\nNote Off\n\n61\nBend Change\n3\n62\n"));

    ConsoleCapture out;
    transfer_.importFile(url_of("gap.txt"));
    QCoreApplication::sendPostedEvents();
    transfer_.importFile(url_of("gap.txt"));
    QCoreApplication::sendPostedEvents();
    out.finish();
    EXPECT_EQ(configuration.settings.mid(0, 8),
              (QStringList{"Note On", "1", "60", "Note Off", "61", "Bend Change", "3", "62"}));
    expect_knob(state_, 0, "Note On", "1", "60");
    // Knob 1 reads "Note Off", "61", "Bend Change": channel 61 fails, controller fails and empties the channel.
    expect_knob(state_, 1, "Note Off", "", "61");
    // Knob 2 reads "3", "62", "Note On".
    expect_knob(state_, 2, "选择消息类型", "", "62");
    // Knob 3 reads "4", "63", "Note On".
    expect_knob(state_, 3, "选择消息类型", "", "63");
}

TEST_F(ConfigFileTransferTest, UnreadableFileLeavesTheTableButStillRefreshes)
{
    configuration.settings[3] = "Note On";
    configuration.settings[4] = "2";
    configuration.settings[5] = "20";
    device_connect_state_retval[10] = 1;
    const QStringList before = configuration.settings;
    const QUrl missing = url_of("nope.txt");
    const ImportOutput out = import_file(missing);
    ASSERT_EQ(out.during.size(), 3);
    EXPECT_EQ(out.during[0], missing.toString(QUrl::FullyEncoded));
    EXPECT_EQ(out.during[1], "Failed to read file: No such file or directory");
    EXPECT_EQ(out.during[2], "PPP Loaded settings: " + list_notation(before));
    EXPECT_EQ(out.after, QStringList());
    EXPECT_EQ(configuration.settings, before);
    EXPECT_EQ(transfer_.fileURLString(), missing.toString(QUrl::FullyEncoded));
    expect_knob(state_, 1, "Note On", "2", "20");
    EXPECT_EQ(device_connect_state_retval[10], 0);
}

TEST_F(ConfigFileTransferTest, FolderInsteadOfAFileCannotBeRead)
{
    ASSERT_TRUE(QDir(dir_.path()).mkdir("folder.txt"));
    const ImportOutput out = import_file(url_of("folder.txt"));
    ASSERT_EQ(out.during.size(), 3);
    EXPECT_TRUE(out.during[1].startsWith("Failed to read file: ")) << out.during[1].toStdString();
    EXPECT_EQ(out.after, QStringList());
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(ConfigFileTransferTest, LocationThatIsNotAUrlIsRefused)
{
    const ImportOutput out = import_file(QUrl());
    EXPECT_EQ(out.during, (QStringList{"", "Invalid URL", "PPP Loaded settings: " + list_notation(blanks(90))}));
    EXPECT_EQ(out.after, QStringList());
    EXPECT_EQ(configuration.settings, blanks(90));
    expect_knob(state_, 0, "选择消息类型", "", "127");
}

TEST_F(ConfigFileTransferTest, RemoteLocationIsNotRead)
{
    const ImportOutput out = import_file(QUrl("https://example.com/knobs.txt"));
    EXPECT_EQ(out.during,
              (QStringList{"https://example.com/knobs.txt", "Failed to read file: Only local files can be read",
                           "PPP Loaded settings: " + list_notation(blanks(90))}));
    EXPECT_EQ(out.after, QStringList());
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(ConfigFileTransferTest, LocationWithBlanksAndChineseIsReadBack)
{
    ASSERT_TRUE(QDir(dir_.path()).mkdir("my knobs"));
    const QUrl url = write_file("my knobs/旋钮.txt", "Bend Change\n2\n3");
    const ImportOutput out = import_file(url);
    const QString expected = "file://" + dir_.path() + "/my%20knobs/%E6%97%8B%E9%92%AE.txt";
    EXPECT_EQ(out.during[0], expected);
    EXPECT_EQ(transfer_.fileURLString(), expected);
    EXPECT_EQ(configuration.settings.mid(0, 3), (QStringList{"Bend Change", "2", "3"}));
}

// File names on Linux are bytes. One that is not valid UTF-8 reaches the
// panel as percent escapes of its bytes (a native dialog reports it so); the
// location is printed as given and the file is read by those bytes.
TEST_F(ConfigFileTransferTest, FileNameThatIsNotUtf8IsReadByItsBytes)
{
    const QByteArray name = QFile::encodeName(dir_.path()) + "/\xff\xfe.txt";
    FILE* file = std::fopen(name.constData(), "wb");
    ASSERT_NE(file, nullptr);
    std::fputs("Note Off\n7\n99", file);
    std::fclose(file);
    // QTemporaryDir lists names as text and cannot see this one to remove it.
    struct Unlink {
        QByteArray path;
        ~Unlink() { ::unlink(path.constData()); }
    } unlink_at_end{name};

    QUrl url = QUrl::fromLocalFile(dir_.path());
    url.setPath(url.path(QUrl::FullyEncoded) + "/%FF%FE.txt", QUrl::TolerantMode);
    const QString expected = "file://" + QUrl::fromLocalFile(dir_.path()).path(QUrl::FullyEncoded) + "/%FF%FE.txt";
    ASSERT_EQ(url.toString(QUrl::FullyEncoded), expected);

    const ImportOutput out = import_file(url);
    ASSERT_EQ(out.during.size(), 2) << out.during.join('|').toStdString();
    EXPECT_EQ(out.during[0], expected);
    EXPECT_EQ(transfer_.fileURLString(), expected);
    EXPECT_EQ(out.after.value(1), "Updated configuration.settings count: 300");
    EXPECT_EQ(configuration.settings.mid(0, 3), (QStringList{"Note Off", "7", "99"}));

    // A name of other bytes is another file.
    const ImportOutput other = import_file(QUrl(QStringLiteral("file://") + dir_.path() + "/%FE%FF.txt"));
    EXPECT_EQ(other.during.value(1), "Failed to read file: No such file or directory");
}

TEST_F(ConfigFileTransferTest, InvalidUtf8IsReplaced)
{
    import_file(write_file("bad.txt", "Note On\n\xff\xfe\n6\xe4\xb8"));
    EXPECT_EQ(configuration.settings.mid(0, 3),
              (QStringList{"Note On", QString(2, QChar(0xFFFD)), "6" + QString(QChar(0xFFFD))}));
}

TEST_F(ConfigFileTransferTest, BinaryFileNeverCrashes)
{
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes.append(char((i * 2654435761u) >> 11));
    const ImportOutput out = import_file(write_file("noise.bin", bytes));
    ASSERT_EQ(out.after.size() >= 2, true);
    const QString count_line = out.after[out.after.size() - 2];
    EXPECT_TRUE(count_line.startsWith("Updated configuration.settings count: ")) << count_line.toStdString();
    EXPECT_GE(configuration.settings.size(), 300);
    for (const QString& slot : configuration.settings)
        EXPECT_FALSE(slot.isEmpty());
}

TEST_F(ConfigFileTransferTest, HugeFileIsTakenWhole)
{
    QByteArray bytes;
    for (int i = 0; i < 250000; ++i)
        bytes += QByteArray::number(i % 128) + '\n';
    const ImportOutput out = import_file(write_file("huge.txt", bytes));
    EXPECT_EQ(out.after[0], "Updated configuration.settings count: 250000");
    ASSERT_EQ(configuration.settings.size(), 250000);
    EXPECT_EQ(configuration.settings[249999], QString::number(249999 % 128));
}

TEST_F(ConfigFileTransferTest, ImportNeverWritesThePreferencesStore)
{
    import_file(write_file("three.txt", "Note On\n1\n60"));
    EXPECT_FALSE(QSettings("dialcraft", "dialcraft").contains("configurationKey"));
}

TEST_F(ConfigFileTransferTest, QueuedBlockIsDroppedWithItsPanel)
{
    auto* panel = new ConfigFileTransfer;
    panel->setGlobalState(&state_);
    {
        ConsoleCapture out;
        panel->importFile(write_file("three.txt", "Note On\n1\n60"));
        out.finish();
    }
    delete panel;
    ConsoleCapture out;
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(out.finish(), "");
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(ConfigFileTransferTest, PropertiesAnnounceTheirChanges)
{
    QSignalSpy url(&transfer_, &ConfigFileTransfer::fileURLStringChanged);
    QSignalSpy text(&transfer_, &ConfigFileTransfer::documentTextChanged);
    transfer_.prepareImport();
    import_file(write_file("three.txt", "Note On\n1\n60"));
    EXPECT_EQ(url.count(), 1);
    EXPECT_EQ(text.count(), 1);
    EXPECT_EQ(transfer_.documentText(), "Note On\n1\n60");
}

using ConfigFileTransferDeathTest = ConfigFileTransferTest;

TEST_F(ConfigFileTransferDeathTest, ButtonsWithoutStateAreFatal)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ConfigFileTransfer panel;
    EXPECT_DEATH(panel.prepareExport(), "Unexpectedly found nil while unwrapping an Optional value");
    EXPECT_DEATH(panel.prepareImport(), "Unexpectedly found nil while unwrapping an Optional value");
}

}  // namespace
