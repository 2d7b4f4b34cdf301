#include <gtest/gtest.h>

#include "qt_printers.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

#include "console_capture.h"
#include "file_size_limit.h"
#include "isolated_settings.h"
#include "model/configuration.h"
#include "model/configuration_json.h"
#include "model/global_state.h"
#include "model/slot_mapping.h"
#include "model/stored_configuration.h"
#include "random_text.h"

using namespace dialcraft;

namespace {

const QString key = QStringLiteral("configurationKey");

QSettings store()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"));
}

QStringList blanks(int n)
{
    return QStringList(n, QStringLiteral("                    "));
}

// A failed load prints one line: the fixed prefix and a description of the
// failure, whose wording is the JSON library's and is not pinned here.
void expect_one_error_line(const QStringList& lines, const QByteArray& stored = {})
{
    const QString prefix = QStringLiteral("Error loading configuration: ");
    ASSERT_EQ(lines.size(), 1) << stored.toStdString();
    EXPECT_TRUE(lines[0].startsWith(prefix)) << lines[0].toStdString();
    EXPECT_GT(lines[0].size(), prefix.size()) << stored.toStdString();
}

class StoredConfigurationTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        // Test-mode paths keep this store away from the real user's settings.
        ASSERT_TRUE(QStandardPaths::isTestModeEnabled());
        QSettings s = store();
        s.remove(key);
        s.sync();
        configuration = Configuration{initialSettings()};
    }
    void TearDown() override
    {
        QSettings s = store();
        s.remove(key);
        configuration = Configuration{initialSettings()};
    }

    IsolatedSettings isolated_settings_;

    static void put(const QVariant& value)
    {
        QSettings s = store();
        s.setValue(key, value);
        s.sync();
    }

    static QVariant stored() { return store().value(key); }

    // Loads and returns the printed lines.
    static QStringList load()
    {
        ConsoleCapture out;
        loadCustomInfo();
        return out.finishLines();
    }
};

TEST_F(StoredConfigurationTest, StoreLivesInTheIsolatedFolder)
{
    EXPECT_EQ(store().fileName(), isolated_settings_.path() + "/dialcraft/dialcraft.conf");
    configuration.settings = {"x"};
    saveCustomInfo();
    EXPECT_TRUE(QFile::exists(isolated_settings_.path() + "/dialcraft/dialcraft.conf"));
}

TEST_F(StoredConfigurationTest, FirstRunGivesTheInitialTableSilently)
{
    configuration.settings = {"left", "over"};
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(StoredConfigurationTest, EmptyStoredTableIsPaddedTo300)
{
    put(QByteArray(R"({"settings":[]})"));
    EXPECT_EQ(load(), QStringList{"Expanded configuration.settings to 300 elements"});
    EXPECT_EQ(configuration.settings, blanks(300));
}

TEST_F(StoredConfigurationTest, StoredKnob0ReachesItsRecord)
{
    put(QByteArray(R"({"settings":["Note On","1","60"]})"));
    EXPECT_EQ(load(), QStringList{"Expanded configuration.settings to 300 elements"});
    ASSERT_EQ(configuration.settings.size(), 300);
    EXPECT_EQ(configuration.settings.mid(0, 3), (QStringList{"Note On", "1", "60"}));
    EXPECT_EQ(configuration.settings.mid(3), blanks(297));

    GlobalState state;
    ConsoleCapture out;
    SetupAreaData_index_config_to_UI(state, 0);
    EXPECT_EQ(out.finish(), "Accessing configuration.settings at index: 0\n");
    EXPECT_EQ(state.record(0)->message_type_menu_string(), "Note On");
    EXPECT_EQ(state.record(0)->message_channel_menu_string(), "1");
    EXPECT_EQ(state.record(0)->message_controller_number_code_string(), "60");
}

TEST_F(StoredConfigurationTest, SavedInitialTableIsPaddedOnLoad)
{
    ConsoleCapture save_out;
    saveCustomInfo();
    EXPECT_EQ(save_out.finish(), "");
    configuration.settings.clear();
    EXPECT_EQ(load(), QStringList{"Expanded configuration.settings to 300 elements"});
    EXPECT_EQ(configuration.settings, blanks(300));
}

TEST_F(StoredConfigurationTest, TableOf312SlotsIsKeptWhole)
{
    QStringList settings;
    for (int i = 0; i < 312; ++i)
        settings.append(QString::number(i));
    put(encode_configuration(Configuration{settings}));
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings, settings);
}

TEST_F(StoredConfigurationTest, TableOfExactly300SlotsIsNotExpanded)
{
    put(encode_configuration(Configuration{blanks(299) << "last"}));
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings.size(), 300);
    EXPECT_EQ(configuration.settings.last(), "last");
}

TEST_F(StoredConfigurationTest, BytesThatAreNotJsonFallBackToTheUnpaddedInitialTable)
{
    put(QByteArray("this is not JSON"));
    configuration.settings = {"stale"};
    expect_one_error_line(load());
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(StoredConfigurationTest, DamagedStoredValuesFallBackWithTheirReason)
{
    // Bytes that are not JSON: the reason is the JSON library's.
    const QByteArray not_json[] = {
        R"({"settings":["Note On","1","6)",
        QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16),
        "{\"settings\":[\"\xe9\x80\"]}",
        QByteArray(),
    };
    for (const QByteArray& bytes : not_json) {
        put(bytes);
        configuration.settings = {"stale"};
        expect_one_error_line(load(), bytes);
        EXPECT_EQ(configuration.settings, blanks(90));
    }
    // JSON of the wrong shape: the decoder says what it missed.
    struct Case {
        QByteArray bytes;
        QString line;
    };
    const Case cases[] = {
        {R"({"settings":"Note On"})",
         R"(Error loading configuration: Expected an array of strings for key "settings".)"},
        {R"({"settings":["a",2]})", R"(Error loading configuration: Expected a string at "settings" index 1.)"},
        {R"({"configuration":[]})", R"(Error loading configuration: No value associated with key "settings".)"},
    };
    for (const Case& c : cases) {
        put(c.bytes);
        configuration.settings = {"stale"};
        EXPECT_EQ(load(), QStringList{c.line}) << c.bytes.toStdString();
        EXPECT_EQ(configuration.settings, blanks(90));
    }
}

TEST_F(StoredConfigurationTest, HugeGarbageFallsBack)
{
    QByteArray garbage(8 << 20, '\0');
    for (qsizetype i = 0; i < garbage.size(); ++i)
        garbage[i] = char((i * 2654435761u) >> 13);
    garbage[0] = '{';
    put(garbage);
    expect_one_error_line(load());
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(StoredConfigurationTest, HugeStoredTableLoadsWhole)
{
    QStringList settings;
    for (int i = 0; i < 500000; ++i)
        settings.append(QStringLiteral("选择消息类型/%1").arg(i));
    configuration.settings = settings;
    saveCustomInfo();
    configuration.settings.clear();
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings, settings);
}

TEST_F(StoredConfigurationTest, ExtraMembersAreIgnored)
{
    put(QByteArray(R"({"settings":["x"],"extra":1})"));
    EXPECT_EQ(load(), QStringList{"Expanded configuration.settings to 300 elements"});
    ASSERT_EQ(configuration.settings.size(), 300);
    EXPECT_EQ(configuration.settings[0], "x");
}

TEST_F(StoredConfigurationTest, ValueOfAnotherKindCountsAsAbsent)
{
    for (const QVariant& value : {QVariant(QStringLiteral(R"({"settings":["Note On"]})")), QVariant(42),
                                  QVariant(QStringList{"Note On", "1"}), QVariant(true)}) {
        put(value);
        configuration.settings = {"stale"};
        EXPECT_EQ(load(), QStringList()) << value.typeName();
        EXPECT_EQ(configuration.settings, blanks(90)) << value.typeName();
    }
}

TEST_F(StoredConfigurationTest, SaveStoresTheExactJsonAsBinaryData)
{
    configuration.settings = {"Control Change", "2", "74", "a/b", QStringLiteral("选择消息类型")};
    ConsoleCapture out;
    saveCustomInfo();
    EXPECT_EQ(out.finish(), "");
    const QVariant value = stored();
    EXPECT_EQ(value.typeId(), QMetaType::QByteArray);
    EXPECT_EQ(value.toByteArray(), QByteArray("{\"settings\":[\"Control Change\",\"2\",\"74\",\"a\\/b\",\"") +
                                       QStringLiteral("选择消息类型").toUtf8() + "\"]}");
}

TEST_F(StoredConfigurationTest, SavingAfterLoadingStores300SavingWithoutEntryStores90)
{
    ConsoleCapture out;
    loadCustomInfo();  // no entry: 90 slots
    saveCustomInfo();
    EXPECT_EQ(out.finish(), "");
    EXPECT_EQ(decode_configuration(stored().toByteArray())->settings, blanks(90));

    loadCustomInfo();  // now padded to 300
    saveCustomInfo();
    EXPECT_EQ(decode_configuration(stored().toByteArray())->settings, blanks(300));
    EXPECT_EQ(stored().toByteArray(), encode_configuration(Configuration{blanks(300)}));
}

TEST_F(StoredConfigurationTest, OtherEntriesOfTheStoreDoNotDisturbTheSave)
{
    {
        QSettings s = store();
        s.setValue("aaa", "before");
        s.setValue("zzz", "after");
        s.setValue("window/geometry", QByteArray("\x01\x02)\n"));
        s.sync();
    }
    configuration.settings = {"Note On", "1", "60"};
    ConsoleCapture out;
    saveCustomInfo();
    EXPECT_EQ(out.finish(), "");
    EXPECT_EQ(stored().toByteArray(), QByteArray(R"({"settings":["Note On","1","60"]})"));
    EXPECT_EQ(store().value("zzz").toString(), "after");
    EXPECT_EQ(store().value("window/geometry").toByteArray(), QByteArray("\x01\x02)\n"));
}

TEST_F(StoredConfigurationTest, SaveReplacesThePreviousValue)
{
    put(QByteArray("old"));
    configuration.settings = {"new"};
    saveCustomInfo();
    EXPECT_EQ(stored().toByteArray(), QByteArray(R"({"settings":["new"]})"));
}

TEST_F(StoredConfigurationTest, SlotsSurviveARoundTripThroughTheStore)
{
    QStringList settings = blanks(300);
    settings[15] = "Control Change";
    settings[16] = "2";
    settings[17] = "74";
    settings[18] = QStringLiteral("选择消息类型");
    settings[19] = "";
    settings[20] = "\"\\/\r\n\t\x01";
    configuration.settings = settings;
    saveCustomInfo();
    configuration.settings.clear();
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings, settings);
}

TEST_F(StoredConfigurationTest, ByteOrderMarkInASlotSurvivesSaveAndLoad)
{
    const QString bom(QChar(0xFEFF));
    QStringList settings = blanks(300);
    settings[15] = "Control Change";
    settings[16] = bom + "5";  // a channel that must keep failing its check
    settings[17] = "74";
    settings[18] = bom;
    settings[20] = "7" + bom + "4";
    configuration.settings = settings;
    saveCustomInfo();
    EXPECT_TRUE(
        stored().toByteArray().contains("\"\xef\xbb\xbf"
                                        "5\""));
    configuration.settings.clear();
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings, settings);

    // Read back as "5", the channel would now be accepted for knob 5.
    GlobalState state;
    {
        ConsoleCapture out;
        SetupAreaData_index_config_to_UI(state, 5);
    }
    EXPECT_EQ(state.record(5)->message_type_menu_string(), "Control Change");
    EXPECT_EQ(state.record(5)->message_channel_menu_string(), "");
    EXPECT_EQ(state.record(5)->message_controller_number_code_string(), "74");
}

// The settings store keeps the JSON bytes as they are, so random tables come
// back exactly. 300 slots: no padding on load.
TEST_F(StoredConfigurationTest, RandomTablesSurviveSaveAndLoad)
{
    RandomText random(7);
    for (int round = 0; round < 20; ++round) {
        const QStringList settings = random.table(300, 16);
        configuration.settings = settings;
        ConsoleCapture out;
        saveCustomInfo();
        configuration.settings.clear();
        loadCustomInfo();
        ASSERT_EQ(out.text(), "") << "round " << round;
        ASSERT_EQ(configuration.settings, settings) << "round " << round;
    }
}

// Writing the settings file is what can fail (serialising strings cannot);
// a file-size limit (file_size_limit.h) makes the write fail.

QByteArray settings_file_bytes()
{
    QFile file(store().fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Captures standard output through a pipe, which no file size limit affects.
// Saves a large table while file writes are capped at `limit` bytes and
// returns what was printed.
std::string save_under_limit(rlim_t limit)
{
    configuration.settings = blanks(20000);
    ConsoleCapture out;
    {
        FileSizeLimit cap(limit);
        saveCustomInfo();
    }
    return out.finish();
}

TEST_F(StoredConfigurationTest, SaveCutShortKeepsThePreviousStoredValue)
{
    configuration.settings = {"Note On", "1", "60"};
    saveCustomInfo();
    const QByteArray file_before = settings_file_bytes();
    ASSERT_TRUE(file_before.contains("configurationKey")) << file_before.toStdString();

    // The write stops part-way; the settings file must not keep the torn copy.
    EXPECT_EQ(save_under_limit(file_before.size() + 1024),
              "Error saving configuration: the settings file was written incompletely\n");
    EXPECT_EQ(settings_file_bytes(), file_before);
    EXPECT_EQ(stored().toByteArray(), QByteArray(R"({"settings":["Note On","1","60"]})"));
    EXPECT_EQ(load(), QStringList{"Expanded configuration.settings to 300 elements"});
    EXPECT_EQ(configuration.settings.mid(0, 3), (QStringList{"Note On", "1", "60"}));
}

TEST_F(StoredConfigurationTest, SaveThatCannotWriteAtAllKeepsThePreviousStoredValue)
{
    configuration.settings = {"Bend Change", "3", "7"};
    saveCustomInfo();
    const QByteArray file_before = settings_file_bytes();

    EXPECT_EQ(save_under_limit(0), "Error saving configuration: the settings file could not be written\n");
    EXPECT_EQ(settings_file_bytes(), file_before);
    EXPECT_EQ(stored().toByteArray(), QByteArray(R"({"settings":["Bend Change","3","7"]})"));
    // Later writes of the store do not bring the failed table back.
    QSettings other = store();
    other.setValue("unrelated", 1);
    other.sync();
    other.remove("unrelated");
    other.sync();
    EXPECT_EQ(settings_file_bytes(), file_before);
}

TEST_F(StoredConfigurationTest, CheckedSaveSaysWhetherTheTableWasStored)
{
    configuration.settings = {"Note On", "1", "60"};
    ConsoleCapture out;
    EXPECT_TRUE(saveCustomInfoChecked());
    EXPECT_EQ(out.text(), "");
    configuration.settings = blanks(20000);
    {
        FileSizeLimit cap(0);
        EXPECT_FALSE(saveCustomInfoChecked());
    }
    EXPECT_EQ(out.finish(), "Error saving configuration: the settings file could not be written\n");
    EXPECT_EQ(stored().toByteArray(), QByteArray(R"({"settings":["Note On","1","60"]})"));
}

TEST_F(StoredConfigurationTest, FailedFirstSaveLeavesNoEntry)
{
    EXPECT_EQ(save_under_limit(256), "Error saving configuration: the settings file was written incompletely\n");
    EXPECT_FALSE(stored().isValid());
    EXPECT_FALSE(settings_file_bytes().contains("configurationKey"));
    EXPECT_EQ(load(), QStringList());
    EXPECT_EQ(configuration.settings, blanks(90));
}

// The documents folder follows $HOME; point it at a temporary folder.
class DocumentsFolderTest : public StoredConfigurationTest {
protected:
    void SetUp() override
    {
        StoredConfigurationTest::SetUp();
        ASSERT_TRUE(home_.isValid());
        saved_home_ = qgetenv("HOME");
        qputenv("HOME", home_.path().toUtf8());
        documents_ = QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation).value(0);
        ASSERT_EQ(documents_, home_.path() + "/Documents");
        ASSERT_TRUE(QDir().mkpath(documents_));
        loadedConfig.reset();
    }
    void TearDown() override
    {
        qputenv("HOME", saved_home_);
        loadedConfig.reset();
        StoredConfigurationTest::TearDown();
    }

    QString file_path() const { return documents_ + "/configuration.json"; }
    QByteArray file_bytes() const
    {
        QFile f(file_path());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
    void write_file(const QByteArray& bytes) const
    {
        QFile f(file_path());
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }

    QTemporaryDir home_;
    QByteArray saved_home_;
    QString documents_;
};

TEST_F(DocumentsFolderTest, SaveConfigurationWritesTheJsonAndPrintsTheFileUrl)
{
    ConsoleCapture out;
    saveConfiguration(Configuration{{"Control Change", "2", "74"}});
    EXPECT_EQ(QString::fromStdString(out.finish()), "Configuration saved to file://" + file_path() + "\n");
    EXPECT_EQ(file_bytes(), QByteArray(R"({"settings":["Control Change","2","74"]})"));
    EXPECT_EQ(store().value(key).isValid(), false);  // the settings store is not touched
}

TEST_F(DocumentsFolderTest, SaveConfigurationReplacesTheFile)
{
    write_file("old contents that are longer than the new ones");
    ConsoleCapture out;
    saveConfiguration(Configuration{{}});
    out.finish();
    EXPECT_EQ(file_bytes(), QByteArray(R"({"settings":[]})"));
}

TEST_F(DocumentsFolderTest, SaveConfigurationWithoutTheFolderPrintsTheError)
{
    ASSERT_TRUE(QDir(documents_).removeRecursively());
    ConsoleCapture out;
    saveConfiguration(Configuration{{"x"}});
    const QStringList lines = out.finishLines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith("Error saving configuration: ")) << lines[0].toStdString();
    EXPECT_GT(lines[0].size(), QString("Error saving configuration: ").size());
    EXPECT_FALSE(QFile::exists(file_path()));
}

TEST_F(DocumentsFolderTest, FailedSaveConfigurationKeepsThePreviousFile)
{
    write_file(R"({"settings":["kept"]})");
    ConsoleCapture out;
    {
        FileSizeLimit limit(1024);
        saveConfiguration(Configuration{blanks(1000)});
    }
    const std::string printed = out.finish();
    EXPECT_EQ(printed.rfind("Error saving configuration: ", 0), 0u) << printed;
    EXPECT_EQ(file_bytes(), QByteArray(R"({"settings":["kept"]})"));
}

TEST_F(DocumentsFolderTest, LoadConfigurationFillsLoadedConfigOnly)
{
    write_file(R"({"settings":["Note On","1","60"],"other":true})");
    ConsoleCapture out;
    loadConfiguration();
    EXPECT_EQ(out.finish(), "Configuration loaded successfully\n");
    ASSERT_TRUE(loadedConfig.has_value());
    EXPECT_EQ(loadedConfig->settings, (QStringList{"Note On", "1", "60"}));  // not padded
    EXPECT_EQ(configuration.settings, blanks(90));                           // not changed
}

TEST_F(DocumentsFolderTest, SaveThenLoadConfigurationRoundTrips)
{
    const QStringList settings{QStringLiteral("选择消息类型"), "", "a/\"b\"\n"};
    ConsoleCapture out;
    saveConfiguration(Configuration{settings});
    loadConfiguration();
    EXPECT_EQ(QString::fromStdString(out.finish()),
              "Configuration saved to file://" + file_path() + "\nConfiguration loaded successfully\n");
    ASSERT_TRUE(loadedConfig.has_value());
    EXPECT_EQ(loadedConfig->settings, settings);
}

TEST_F(DocumentsFolderTest, ByteOrderMarkInASlotSurvivesTheFile)
{
    const QString bom(QChar(0xFEFF));
    const QStringList settings{bom + "5", "5" + bom, bom};
    ConsoleCapture out;
    saveConfiguration(Configuration{settings});
    EXPECT_EQ(file_bytes(), QByteArray("{\"settings\":[\"\xef\xbb\xbf"
                                       "5\",\"5\xef\xbb\xbf\",\"\xef\xbb\xbf\"]}"));
    loadConfiguration();
    ASSERT_TRUE(loadedConfig.has_value());
    EXPECT_EQ(loadedConfig->settings, settings);
}

TEST_F(DocumentsFolderTest, RandomTablesSurviveTheFile)
{
    RandomText random(11);
    for (int round = 0; round < 20; ++round) {
        const QStringList settings = random.table(int(random.pick(0, 120)), 16);
        ConsoleCapture out;
        saveConfiguration(Configuration{settings});
        loadConfiguration();
        ASSERT_EQ(QString::fromStdString(out.text()),
                  "Configuration saved to file://" + file_path() + "\nConfiguration loaded successfully\n");
        ASSERT_TRUE(loadedConfig.has_value());
        ASSERT_EQ(loadedConfig->settings, settings) << "round " << round;
    }
}

TEST_F(DocumentsFolderTest, LoadConfigurationFailuresKeepLoadedConfig)
{
    loadedConfig = Configuration{{"previous"}};
    {
        ConsoleCapture out;
        loadConfiguration();  // no file
        EXPECT_EQ(out.finish(), "No configuration found or failed to decode\n");
    }
    for (const QByteArray& bytes :
         {QByteArray("garbage"), QByteArray(R"({"settings":[1]})"), QByteArray(), QByteArray("\xff\xfe\x00{", 4)}) {
        write_file(bytes);
        ConsoleCapture out;
        loadConfiguration();
        EXPECT_EQ(out.finish(), "No configuration found or failed to decode\n") << bytes.toStdString();
    }
    // A folder where the file should be cannot be read either.
    ASSERT_TRUE(QFile::remove(file_path()));
    ASSERT_TRUE(QDir().mkpath(file_path()));
    {
        ConsoleCapture out;
        loadConfiguration();
        EXPECT_EQ(out.finish(), "No configuration found or failed to decode\n");
    }
    ASSERT_TRUE(loadedConfig.has_value());
    EXPECT_EQ(loadedConfig->settings, QStringList{"previous"});
    EXPECT_EQ(configuration.settings, blanks(90));
}

TEST_F(DocumentsFolderTest, FileUrlOfAPathWithBlanksIsPercentEncoded)
{
    qputenv("HOME", (home_.path() + "/my home").toUtf8());
    const QString documents = QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation).value(0);
    ASSERT_TRUE(QDir().mkpath(documents));
    ConsoleCapture out;
    saveConfiguration(Configuration{{"x"}});
    EXPECT_EQ(QString::fromStdString(out.finish()),
              "Configuration saved to file://" + home_.path() + "/my%20home/Documents/configuration.json\n");
}

}  // namespace
