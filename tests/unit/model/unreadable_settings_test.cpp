// A settings file that QSettings cannot parse never costs the session's table:
// the save moves it aside, keeping its bytes, and writes a fresh file. Real
// write failures (read-only folder, full disk) keep the previous file as it was.
#include <gtest/gtest.h>

#include "qt_printers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <random>
#include <sys/mount.h>

#include "console_capture.h"
#include "isolated_settings.h"
#include "model/configuration.h"
#include "model/configuration_json.h"
#include "model/stored_configuration.h"

using namespace dialcraft;

namespace {

const QString key = QStringLiteral("configurationKey");
const QString moved_prefix = QStringLiteral("无法读取的设置文件已移至(Unreadable settings file moved to): ");

QSettings store()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"));
}

QByteArray file_bytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void write_bytes(const QString& path, const QByteArray& bytes)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray random_bytes(qsizetype size, unsigned seed)
{
    std::mt19937 generator(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(generator() & 0xFF);
    return bytes;
}

// Whether a QSettings of its own, on a copy, finds a format error: the copy
// keeps Qt's per-process cache of the real file out of the verdict.
bool qt_finds_format_error(const QByteArray& bytes)
{
    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("copy.conf"));
    QFile file(copy);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return false;
    file.close();
    QSettings settings(copy, QSettings::IniFormat);
    (void)settings.allKeys();
    return settings.status() == QSettings::FormatError;
}

QStringList session_table()
{
    QStringList table(90, QString(20, QLatin1Char(' ')));
    table[15] = QStringLiteral("Control Change");
    table[16] = QStringLiteral("2");
    table[17] = QStringLiteral("74");
    return table;
}

// Files beside the settings file whose names start with its own name.
QStringList siblings(const QString& settings_file)
{
    const QFileInfo info(settings_file);
    return QDir(info.absolutePath())
        .entryList({info.fileName() + QStringLiteral(".*")}, QDir::Files | QDir::Hidden, QDir::Name);
}

// A tmpfs of 64 KiB mounted on a temporary folder, for a disk that fills up
// and a folder that becomes read-only. Mounting needs root (CAP_SYS_ADMIN).
class SmallFilesystem {
public:
    SmallFilesystem()
    {
        if (!dir_.isValid()) {
            reason_ = "no temporary folder";
            return;
        }
        if (::mount("tmpfs", path().toLocal8Bit().constData(), "tmpfs", 0, "size=64k") != 0) {
            reason_ = std::string("cannot mount a 64 KiB tmpfs here (") + std::strerror(errno) +
                      "); the test needs root with CAP_SYS_ADMIN";
            return;
        }
        mounted_ = true;
    }
    ~SmallFilesystem()
    {
        if (mounted_)
            ::umount2(path().toLocal8Bit().constData(), MNT_DETACH);
    }
    SmallFilesystem(const SmallFilesystem&) = delete;
    SmallFilesystem& operator=(const SmallFilesystem&) = delete;

    bool mounted() const { return mounted_; }
    const std::string& reason() const { return reason_; }
    QString path() const { return dir_.path(); }

    bool make_read_only()
    {
        return ::mount("tmpfs", path().toLocal8Bit().constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k") == 0;
    }
    // Writes a filler file until the filesystem has no room left.
    bool fill()
    {
        QFile filler(path() + QStringLiteral("/filler"));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return false;
        const QByteArray block(512, 'x');
        while (filler.write(block) == block.size()) {
        }
        return filler.error() != QFileDevice::NoError;
    }

private:
    QTemporaryDir dir_;
    bool mounted_ = false;
    std::string reason_;
};

class UnreadableSettingsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        configuration = Configuration{initialSettings()};
        file_ = store().fileName();
        ASSERT_EQ(file_, isolated_settings_.path() + "/dialcraft/dialcraft.conf");
    }
    void TearDown() override { configuration = Configuration{initialSettings()}; }

    // Saves `table` and returns the printed lines.
    static QStringList save(const QStringList& table)
    {
        configuration.settings = table;
        ConsoleCapture out;
        saveCustomInfo();
        return out.finishLines();
    }

    // The settings file as a save of `table` writes it.
    QByteArray file_holding(const QStringList& table)
    {
        EXPECT_EQ(save(table), QStringList());
        return file_bytes(file_);
    }

    // After the save: the one printed line names the moved file, which holds
    // the unreadable bytes unchanged; the fresh file holds the table alone.
    void expect_moved_aside(const QStringList& printed, const QByteArray& unreadable, const QStringList& table)
    {
        const QStringList names = siblings(file_);
        ASSERT_EQ(names.size(), 1) << names.join(' ').toStdString();
        static const QRegularExpression dated(QStringLiteral("^dialcraft\\.conf\\.unreadable-\\d{8}-\\d{6}$"));
        EXPECT_TRUE(dated.match(names[0]).hasMatch()) << names[0].toStdString();
        const QString aside = QFileInfo(file_).absolutePath() + '/' + names[0];
        EXPECT_EQ(printed, QStringList{moved_prefix + aside});
        EXPECT_EQ(file_bytes(aside), unreadable);
        EXPECT_EQ(last_save_failure(), QString());

        const QByteArray fresh = file_bytes(file_);
        EXPECT_FALSE(qt_finds_format_error(fresh)) << fresh.left(200).toStdString();
        QSettings reread(file_, QSettings::IniFormat);
        EXPECT_EQ(reread.allKeys(), QStringList{key});
        EXPECT_EQ(reread.value(key).toByteArray(), encode_configuration(Configuration{table}));

        configuration.settings.clear();
        ConsoleCapture out;
        loadCustomInfo();
        EXPECT_EQ(out.finishLines(), QStringList{"Expanded configuration.settings to 300 elements"});
        EXPECT_EQ(configuration.settings.first(90), table);
    }

    IsolatedSettings isolated_settings_;
    QString file_;
};

TEST_F(UnreadableSettingsTest, TableFollowedByThreeStrayBytes)
{
    const QByteArray unreadable = file_holding({"Note On", "1", "60"}) + "\x01\x02\x03";
    write_bytes(file_, unreadable);
    ASSERT_TRUE(qt_finds_format_error(unreadable));

    const QStringList printed = save(session_table());
    expect_moved_aside(printed, unreadable, session_table());
}

TEST_F(UnreadableSettingsTest, LineWithoutEqualsSign)
{
    const QByteArray unreadable = file_holding({"Note On", "1", "60"}) + "\n[window]\ngeometry\n";
    write_bytes(file_, unreadable);
    ASSERT_TRUE(qt_finds_format_error(unreadable));

    const QStringList printed = save(session_table());
    expect_moved_aside(printed, unreadable, session_table());
}

TEST_F(UnreadableSettingsTest, RandomFourKilobytes)
{
    const QByteArray unreadable = random_bytes(4096, 11);
    write_bytes(file_, unreadable);
    ASSERT_TRUE(qt_finds_format_error(unreadable));

    const QStringList printed = save(session_table());
    expect_moved_aside(printed, unreadable, session_table());
}

TEST_F(UnreadableSettingsTest, RandomFiftyMegabytesTwoSessionsInARow)
{
    const QByteArray unreadable = random_bytes(50 << 20, 50);
    write_bytes(file_, unreadable);

    // First session: start, edit, close.
    ConsoleCapture start;
    loadCustomInfo();
    start.finish();
    const QStringList printed = save(session_table());
    expect_moved_aside(printed, unreadable, session_table());

    // Second session: the fresh file loads and saves without a word.
    QStringList second = session_table();
    second[16] = QStringLiteral("3");
    EXPECT_EQ(save(second), QStringList());
    EXPECT_EQ(store().value(key).toByteArray(), encode_configuration(Configuration{second}));
    EXPECT_EQ(siblings(file_).size(), 1);
}

// The window loads at start and saves at close in one process; Qt parses the
// file once for both, and the save must still see that it is unreadable.
TEST_F(UnreadableSettingsTest, LoadedAtStartSavedAtClose)
{
    const QByteArray unreadable = file_holding({"Note On", "1", "60"}) + "\nstray line\n";
    write_bytes(file_, unreadable);

    ConsoleCapture start;
    loadCustomInfo();
    EXPECT_EQ(start.finishLines(), QStringList{"Expanded configuration.settings to 300 elements"});
    EXPECT_EQ(configuration.settings.first(3), (QStringList{"Note On", "1", "60"}));

    const QStringList printed = save(session_table());
    expect_moved_aside(printed, unreadable, session_table());
}

TEST_F(UnreadableSettingsTest, ReadableFileIsNeverMoved)
{
    QSettings other = store();
    other.setValue(QStringLiteral("window/geometry"), QByteArray("\x01\x02"));
    other.sync();
    EXPECT_EQ(save(session_table()), QStringList());
    EXPECT_EQ(save({"x"}), QStringList());
    EXPECT_EQ(siblings(file_), QStringList());
    EXPECT_EQ(store().value(QStringLiteral("window/geometry")).toByteArray(), QByteArray("\x01\x02"));
    EXPECT_EQ(last_save_failure(), QString());
}

// Only the user's own file is judged: an unparsable system-wide file, which
// QSettings also reads, is not the user's to move.
TEST_F(UnreadableSettingsTest, UnreadableSystemWideFileIsNotTheUsers)
{
    QTemporaryDir system;
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, system.path());
    write_bytes(system.path() + "/dialcraft/dialcraft.conf", random_bytes(4096, 3));
    const QStringList printed = save(session_table());
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, QStringLiteral("/etc/xdg"));

    EXPECT_EQ(printed, QStringList());
    EXPECT_EQ(siblings(file_), QStringList());
    QSettings reread(file_, QSettings::IniFormat);
    EXPECT_EQ(reread.value(key).toByteArray(), encode_configuration(Configuration{session_table()}));
}

class SmallFilesystemTest : public UnreadableSettingsTest {
protected:
    void SetUp() override
    {
        UnreadableSettingsTest::SetUp();
        if (!disk_.mounted())
            GTEST_SKIP() << disk_.reason();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, disk_.path());
        file_ = disk_.path() + "/dialcraft/dialcraft.conf";
        ASSERT_EQ(store().fileName(), file_);
    }
    void TearDown() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, isolated_settings_.path());
        UnreadableSettingsTest::TearDown();
    }

    SmallFilesystem disk_;
};

TEST_F(SmallFilesystemTest, FullDiskKeepsThePreviousTable)
{
    const QByteArray before = file_holding({"Note On", "1", "60"});
    ASSERT_TRUE(disk_.fill());

    QStringList bigger(2000, QStringLiteral("Control Change"));
    EXPECT_EQ(save(bigger), QStringList{"Error saving configuration: the settings file could not be written"});
    EXPECT_EQ(last_save_failure(), QStringLiteral("the settings file could not be written"));
    EXPECT_EQ(file_bytes(file_), before);
    EXPECT_EQ(siblings(file_), QStringList());
    EXPECT_EQ(store().value(key).toByteArray(), QByteArray(R"({"settings":["Note On","1","60"]})"));
}

TEST_F(SmallFilesystemTest, FullDiskKeepsTheUnreadableFileWhereItWas)
{
    const QByteArray unreadable = file_holding({"Note On", "1", "60"}) + "\x01\x02\x03";
    write_bytes(file_, unreadable);
    ASSERT_TRUE(disk_.fill());

    QStringList bigger(2000, QStringLiteral("Control Change"));
    EXPECT_EQ(save(bigger), QStringList{"Error saving configuration: the settings file could not be written"});
    EXPECT_EQ(file_bytes(file_), unreadable);
    EXPECT_EQ(siblings(file_), QStringList());

    // Room again: the next save moves it aside and succeeds.
    ASSERT_TRUE(QFile::remove(disk_.path() + "/filler"));
    const QStringList printed = save(session_table());
    expect_moved_aside(printed, unreadable, session_table());
}

TEST_F(SmallFilesystemTest, ReadOnlyFolderKeepsThePreviousTable)
{
    const QByteArray before = file_holding({"Bend Change", "3", "7"});
    ASSERT_TRUE(disk_.make_read_only());

    EXPECT_EQ(save(session_table()), QStringList{"Error saving configuration: the settings file could not be written"});
    EXPECT_EQ(file_bytes(file_), before);
    EXPECT_EQ(store().value(key).toByteArray(), QByteArray(R"({"settings":["Bend Change","3","7"]})"));
}

TEST_F(SmallFilesystemTest, ReadOnlyFolderKeepsTheUnreadableFileWhereItWas)
{
    const QByteArray unreadable = random_bytes(4096, 7);
    write_bytes(file_, unreadable);
    ASSERT_TRUE(disk_.make_read_only());

    EXPECT_EQ(save(session_table()), QStringList{"Error saving configuration: the settings file could not be written"});
    EXPECT_EQ(file_bytes(file_), unreadable);
    EXPECT_EQ(siblings(file_), QStringList());
}

}  // namespace
