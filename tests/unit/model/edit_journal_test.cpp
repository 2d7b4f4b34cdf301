// The journal of unsaved edits: its file, the lock a running window holds,
// the journals a window that is gone left behind, and the table's lock.
#include <gtest/gtest.h>

#include "qt_printers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>
#include <QTemporaryDir>

#include "isolated_settings.h"
#include "model/edit_journal.h"
#include "model/table_lock.h"

using namespace dialcraft;

namespace {

class EditJournalTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder_.isValid());
        set_state_folder(folder_.path());
    }
    void TearDown() override { set_state_folder(QString()); }

    QStringList files() const { return QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    // A journal as a window that was killed leaves it: the file, and a lock
    // naming a process that no longer runs.
    QString leave_journal(const QString& name, const QByteArray& bytes) const
    {
        const QString path = folder_.filePath(name + ".journal");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        QFile lock(folder_.filePath(name + ".lock"));
        EXPECT_TRUE(lock.open(QIODevice::WriteOnly));
        lock.write("2147483646\ndialcraft\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        return path;
    }

    QTemporaryDir folder_;
};

const QList<JournalEdit> two_edits{{5, "Control Change", "2", "74"}, {26, "Note On", "", "x"}};

}  // namespace

TEST_F(EditJournalTest, EncodesAndDecodesTheEdits)
{
    const QByteArray bytes = encode_journal(two_edits, QDateTime::fromString("2026-11-24T22:00:00Z", Qt::ISODate));
    EXPECT_TRUE(bytes.contains("\"written\": \"2026-11-24T22:00:00Z\"")) << bytes.toStdString();
    QString reason;
    EXPECT_EQ(decode_journal(bytes, &reason), two_edits);
    EXPECT_FALSE(
        decode_journal("{\"version\":1,\"edits\":[{\"knob\":27,\"type\":\"\",\"channel\":\"\","
                       "\"controller\":\"\"}]}",
                       &reason));
    EXPECT_FALSE(decode_journal("not json", &reason));
    EXPECT_FALSE(decode_journal("{\"version\":2,\"edits\":[]}", &reason));
}

TEST_F(EditJournalTest, ARunningWindowHoldsItsLockAndACleanEndRemovesEverything)
{
    EXPECT_FALSE(window_is_open());
    {
        WindowJournal journal;
        EXPECT_TRUE(window_is_open());
        QString reason;
        ASSERT_TRUE(journal.write(two_edits, &reason)) << reason.toStdString();
        EXPECT_TRUE(QFile::exists(journal.path()));
        // A journal of a running window is nobody's orphan.
        EXPECT_TRUE(claim_orphan_journals().empty());
        // No edits left: no journal.
        ASSERT_TRUE(journal.write({}, &reason));
        EXPECT_FALSE(QFile::exists(journal.path()));
        ASSERT_TRUE(journal.write(two_edits, &reason));
        journal.finish();
    }
    EXPECT_EQ(files(), QStringList());
    EXPECT_FALSE(window_is_open());
}

TEST_F(EditJournalTest, AJournalLeftBehindIsClaimedOnceThenRemovedOrKeptAside)
{
    QString left;
    {
        WindowJournal journal;
        QString reason;
        ASSERT_TRUE(journal.write(two_edits, &reason));
        left = journal.path();
    }  // gone without finish(): its lock is free, its journal stays
    std::vector<OrphanJournal> orphans = claim_orphan_journals();
    ASSERT_EQ(orphans.size(), 1u);
    EXPECT_EQ(orphans[0].path, left);
    EXPECT_EQ(orphans[0].edits, two_edits);
    // Claimed: a second start does not offer it too.
    EXPECT_TRUE(claim_orphan_journals().empty());
    const QString aside = dismiss_orphan(orphans[0]);
    EXPECT_TRUE(aside.startsWith(left + ".dismissed-")) << aside.toStdString();
    EXPECT_TRUE(QFile::exists(aside));
    EXPECT_TRUE(claim_orphan_journals().empty());

    const QString again = leave_journal("window-1-2", encode_journal(two_edits, QDateTime::currentDateTimeUtc()));
    orphans = claim_orphan_journals();
    ASSERT_EQ(orphans.size(), 1u);
    remove_orphan(orphans[0]);
    EXPECT_FALSE(QFile::exists(again));
}

TEST_F(EditJournalTest, AnUnreadableJournalIsMovedAsideAndNeverStopsAStart)
{
    const QString path = leave_journal("window-3-4", "{\"version\":1,\"edits\":[");
    leave_journal("window-5-6", encode_journal({}, QDateTime::currentDateTimeUtc()));
    testing::internal::CaptureStderr();
    const std::vector<OrphanJournal> orphans = claim_orphan_journals();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(orphans.empty());
    EXPECT_NE(err.find("dialcraft: 无法读取的未保存修改记录已移至(unreadable journal of unsaved edits moved to) " +
                       path.toStdString() + ".unreadable-"),
              std::string::npos)
        << err;
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1);
    EXPECT_FALSE(QFile::exists(path));
    // The empty one is simply gone.
    EXPECT_FALSE(QFile::exists(folder_.filePath("window-5-6.journal")));
}

TEST_F(EditJournalTest, ALockAWindowLeftWithoutAJournalIsRemovedAtTheNextClaim)
{
    // A window killed before its first edit leaves only its lock.
    QFile abandoned(folder_.filePath("window-7-8.lock"));
    ASSERT_TRUE(abandoned.open(QIODevice::WriteOnly));
    abandoned.write("2147483646\ndialcraft\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    abandoned.close();
    WindowJournal running;
    const QString runningLock = QFileInfo(running.path()).completeBaseName() + ".lock";
    // Compared as sets: where the running window's name sorts depends on its
    // process number.
    QStringList both{runningLock, "window-7-8.lock"};
    both.sort();
    ASSERT_EQ(files(), both);

    EXPECT_TRUE(claim_orphan_journals().empty());
    EXPECT_EQ(files(), QStringList{runningLock});
    running.finish();
    EXPECT_EQ(files(), QStringList());
}

TEST(TableLockTest, ALockLeftByADeadProcessIsTakenOver)
{
    IsolatedSettings settings;
    QDir().mkpath(QFileInfo(table_lock_path()).absolutePath());
    {
        QFile lock(table_lock_path());
        ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
        lock.write("2147483646\ndialcraft\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    }
    {
        const TableLock lock(100);
        EXPECT_TRUE(lock.held()) << lock.failure().toStdString();
    }
    EXPECT_FALSE(QFile::exists(table_lock_path()));
}

TEST(TableLockTest, ALiveHolderIsWaitedForThenNamed)
{
    IsolatedSettings settings;
    const TableLock first;
    ASSERT_TRUE(first.held());
    const TableLock second(50);
    EXPECT_FALSE(second.held());
    EXPECT_FALSE(second.folderReadOnly());
    EXPECT_TRUE(second.failure().contains(table_lock_path()));
}
