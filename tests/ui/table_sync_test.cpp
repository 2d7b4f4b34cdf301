// The window beside dialcraft-cli run as a process: another program's table
// is taken within a second, merged knob by knob with the window's edits, and
// read again before the window's own save; a lock left by a dead process and
// a read-only settings folder; the restore offer by keyboard and screen
// reader.
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QSysInfo>
#include <QTest>

#include <sys/mount.h>
#include <unistd.h>

#include "console_capture.h"
#include "model/configuration.h"
#include "model/edit_journal.h"
#include "model/stored_configuration.h"
#include "model/table_lock.h"
#include "model/table_sync.h"
#include "sim_scene.h"
#include "ui/press/set_all_run.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

const QString blank = QString(20, QLatin1Char(' '));
const QString placeholder = QStringLiteral("选择消息类型");
const QStringList note_on_1_60{QStringLiteral("Note On"), QStringLiteral("1"), QStringLiteral("60")};
const QStringList cc_2_74{QStringLiteral("Control Change"), QStringLiteral("2"), QStringLiteral("74")};
const QStringList note_on_4_10{QStringLiteral("Note On"), QStringLiteral("4"), QStringLiteral("10")};

QStringList knobLines()
{
    QStringList lines;
    for (int i = 0; i <= 26; ++i)
        lines << QStringLiteral("Accessing configuration.settings at index: %1").arg(i);
    return lines;
}

QByteArray storedJson(const QStringList& table)
{
    QByteArray json = "{\"settings\":[";
    for (qsizetype i = 0; i < table.size(); ++i)
        json += (i > 0 ? ",\"" : "\"") + table[i].toUtf8() + '"';
    return json + "]}";
}

// What a window stores: `knobs` as set, the other panels as they show a
// blank stored knob, then `rest` blank slots.
QStringList windowTable(const QList<std::pair<int, QStringList>>& knobs, qsizetype rest)
{
    QStringList table;
    for (int knob = 0; knob <= 26; ++knob)
        table << placeholder << QString() << QStringLiteral("127");
    for (const auto& [knob, values] : knobs)
        for (qsizetype i = 0; i < 3; ++i)
            table[knob * 3 + i] = values[i];
    for (qsizetype i = 0; i < rest; ++i)
        table << blank;
    return table;
}

QByteArray stored()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"))
        .value(QStringLiteral("configurationKey"))
        .toByteArray();
}

QString settingsFolder()
{
    return QFileInfo(settings_file_path()).absolutePath();
}

struct CliRun {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

// dialcraft-cli as a process over this test's settings and state folders.
CliRun runCli(const QStringList& arguments)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), QFileInfo(settingsFolder()).absolutePath());
    env.insert(QStringLiteral("XDG_DATA_HOME"), QFileInfo(state_folder()).absolutePath());
    env.insert(QStringLiteral("DIALCRAFT_SEQ_DEVICE"), QStringLiteral("/dev/null"));
    QProcess cli;
    cli.setProcessEnvironment(env);
    cli.start(QStringLiteral(DIALCRAFT_CLI), arguments);
    CliRun run;
    if (!cli.waitForFinished(30000))
        return run;
    run.status = cli.exitStatus() == QProcess::NormalExit ? cli.exitCode() : -1;
    run.out = cli.readAllStandardOutput();
    run.err = cli.readAllStandardError();
    return run;
}

// A file `dialcraft-cli import` reads by position: the knobs given, every
// other slot of knobs 0 to 99 blank.
QString knobFile(const QTemporaryDir& dir, const QList<std::pair<int, QStringList>>& knobs)
{
    QStringList lines(300, blank);
    for (const auto& [knob, values] : knobs)
        for (qsizetype i = 0; i < 3; ++i)
            lines[knob * 3 + i] = values[i];
    const QString path = dir.filePath(QStringLiteral("gig.txt"));
    write_test_file(path, lines.join(u'\n').toUtf8());
    return path;
}

}  // namespace

class TableSyncTest : public WindowTest {
    Q_OBJECT

public:
    TableSyncTest() : WindowTest(Open::inInit) {}

private:
    QStringList shown(int knob) const
    {
        QQuickItem* panel = harness.panelShowingRecord(knob);
        return {harness.item(QStringLiteral("typeMenu"), panel)->property("displayText").toString(),
                harness.item(QStringLiteral("channelField"), panel)->property("text").toString(),
                harness.item(QStringLiteral("controllerField"), panel)->property("text").toString()};
    }
    void edit(int knob, const QStringList& values)
    {
        QQuickItem* panel = harness.panelShowingRecord(knob);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), values[0]));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), values[1]);
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), values[2]);
        QCOMPARE(shown(knob), values);
    }
    QString message() const { return WindowStatus::of(*harness.state())->message(); }

    QTemporaryDir files_;

private slots:
    void anImportIsTakenWithinASecondAndStoredAtTheClose()
    {
        ConsoleCapture quiet;
        const CliRun cli = runCli({QStringLiteral("import"), knobFile(files_, {{0, note_on_1_60}})});
        QCOMPARE(cli.status, 0);
        QVERIFY2(cli.err.contains("(a dialcraft window is open and will take the table)"), cli.err.constData());
        QTRY_COMPARE_WITH_TIMEOUT(shown(0), note_on_1_60, 1000);
        QCOMPARE(message(), QStringLiteral("旋钮表已被其他程序更新(the table was changed by another program)"));
        QCOMPARE(quiet.finishLines(), QStringList());  // taking the table prints nothing

        // The import replaced the file; the watch follows the new one.
        ConsoleCapture again;
        QCOMPARE(runCli({QStringLiteral("import"), knobFile(files_, {{0, cc_2_74}})}).status, 0);
        QTRY_COMPARE_WITH_TIMEOUT(shown(0), cc_2_74, 1000);
        QCOMPARE(again.finishLines(), QStringList());

        ConsoleCapture closing;
        harness.close();
        QCOMPARE(closing.finishLines(), QStringList{QStringLiteral("midi_exit\r")} + knobLines());
        QCOMPARE(stored(), storedJson(windowTable({{0, cc_2_74}}, 219)));
    }

    void anEditOnAnotherKnobIsKeptBesideTheImport()
    {
        edit(3, note_on_4_10);
        ConsoleCapture quiet;
        QCOMPARE(runCli({QStringLiteral("import"), knobFile(files_, {{0, note_on_1_60}})}).status, 0);
        QTRY_COMPARE_WITH_TIMEOUT(shown(0), note_on_1_60, 1000);
        QCOMPARE(shown(3), note_on_4_10);
        QCOMPARE(message(),
                 QStringLiteral("旋钮表已被其他程序更新(the table was changed by another program); 已取来旋钮 "
                                "0, 本窗口的修改保留(knobs 0 taken, this window's edits kept)"));
        harness.close();
        quiet.finish();
        QCOMPARE(stored(), storedJson(windowTable({{0, note_on_1_60}, {3, note_on_4_10}}, 219)));
    }

    void anEditOnTheSameKnobWinsAndTheOtherValueIsKeptInAFile()
    {
        edit(0, cc_2_74);
        ConsoleCapture quiet;
        QCOMPARE(runCli({QStringLiteral("import"), knobFile(files_, {{0, note_on_1_60}, {1, note_on_4_10}})}).status,
                 0);
        QTRY_COMPARE_WITH_TIMEOUT(shown(1), note_on_4_10, 1000);
        QCOMPARE(shown(0), cc_2_74);
        const QStringList kept =
            QDir(settingsFolder()).entryList({QStringLiteral("conflict-*.txt")}, QDir::Files, QDir::Name);
        QCOMPARE(kept.size(), 1);
        const QString file = settingsFolder() + '/' + kept.first();
        QCOMPARE(message(),
                 QStringLiteral("旋钮表已被其他程序更新(the table was changed by another program); 已取来旋钮 "
                                "1, 本窗口的修改保留(knobs 1 taken, this window's edits kept)\n"
                                "两边都改了旋钮 0, 保留本窗口的值; 其他程序的值在 ") +
                     file +
                     QStringLiteral("(both sides changed knobs 0; this window's values stay, "
                                    "the other program's are in ") +
                     file + ')');
        // The export's format: knob 0 as the other program had it, the rest
        // of knobs 0 to 29 blank.
        QStringList lines(90, blank);
        for (qsizetype i = 0; i < 3; ++i)
            lines[i] = note_on_1_60[i];
        QCOMPARE(read_test_file(file), lines.join(u'\n').toUtf8());
        harness.close();
        quiet.finish();
        QCOMPARE(stored(), storedJson(windowTable({{0, cc_2_74}, {1, note_on_4_10}}, 219)));
    }

    void theCloseReadsTheStoreAgainBeforeItsSave()
    {
        edit(3, note_on_4_10);
        ConsoleCapture quiet;
        QCOMPARE(runCli({QStringLiteral("import"), knobFile(files_, {{0, note_on_1_60}})}).status, 0);
        // Closed before the window had a chance to look at the store.
        harness.close();
        quiet.finish();
        QCOMPARE(stored(), storedJson(windowTable({{0, note_on_1_60}, {3, note_on_4_10}}, 219)));
    }

    void aSetAllRunFinishesBeforeAnotherTableIsTaken()
    {
        plug_controller(*sim, "4AC1CC27");
        for (int knob = 1; knob <= 12; ++knob)
            configure_knob(*harness.state(), knob, "Control Change", "1", "7");
        SetAllRun* run = WindowStatus::of(*harness.state())->setAll();
        bool takenWhileRunning = false;
        // The store is looked at between the run's knobs, as the watch would
        // (whose reports the run's own ledger writes keep postponing).
        connect(run, &SetAllRun::progressChanged, this, [&] {
            if (!run->running())
                return;
            TableSync::of(*harness.state())->checkStore();
            if (shown(0) == note_on_1_60)
                takenWhileRunning = true;
        });
        ConsoleCapture quiet;
        harness.click(harness.item(QStringLiteral("setAllButton")));
        QVERIFY(run->running());
        QCOMPARE(runCli({QStringLiteral("import"), knobFile(files_, {{0, note_on_1_60}})}).status, 0);
        QVERIFY(run->running());
        QTRY_VERIFY_WITH_TIMEOUT(!run->running(), 30000);
        QTRY_COMPARE_WITH_TIMEOUT(shown(0), note_on_1_60, 1000);
        QVERIFY(!takenWhileRunning);
        harness.close();
        quiet.finish();
    }

    void aLockLeftByADeadProcessIsTakenOver()
    {
        QProcess gone;
        qint64 pid = 0;
        connect(&gone, &QProcess::started, this, [&] { pid = gone.processId(); });
        gone.start(QStringLiteral("true"), {});
        QVERIFY(gone.waitForFinished(10000));
        QVERIFY(pid > 0);
        QDir().mkpath(settingsFolder());
        write_test_file(table_lock_path(),
                        QByteArray::number(pid) + "\ntrue\n" + QSysInfo::machineHostName().toUtf8() + "\n");

        QElapsedTimer clock;
        clock.start();
        const CliRun cli = runCli({QStringLiteral("import"), knobFile(files_, {{0, note_on_1_60}})});
        QCOMPARE(cli.status, 0);
        QVERIFY(clock.elapsed() < table_lock_wait_ms / 2);
        QVERIFY2(!cli.err.contains("lock"), cli.err.constData());
        QVERIFY(!QFileInfo::exists(table_lock_path()));
        QTRY_COMPARE_WITH_TIMEOUT(shown(0), note_on_1_60, 1000);
    }

    void aReadOnlySettingsFolderKeepsTheErrorLineAndLosesNothing()
    {
        // Root writes into any folder whatever its mode; a read-only tmpfs
        // stops it too.
        QTemporaryDir mountPoint;
        const QByteArray where = mountPoint.path().toLocal8Bit();
        const bool mounted = ::geteuid() == 0 && ::mount("tmpfs", where.constData(), "tmpfs", 0, "size=1m") == 0;
        if (::geteuid() == 0 && !mounted)
            QSKIP("cannot mount a tmpfs here; the test needs root with CAP_SYS_ADMIN or an ordinary user");
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, mountPoint.path());
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mountPoint.path());
        const QString previous = QFileInfo(settings_file_path()).absolutePath();
        harness.destroy();
        QVERIFY(harness.open());
        edit(9, note_on_4_10);
        QDir().mkpath(settingsFolder());
        const bool readOnly = mounted
                                  ? ::mount("tmpfs", where.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=1m") == 0
                                  : QFile::setPermissions(settingsFolder(), QFile::ReadOwner | QFile::ExeOwner);

        ConsoleCapture closing;
        if (readOnly)
            harness.close();
        const QStringList lines = closing.finishLines();
        harness.destroy();
        if (mounted)
            ::umount2(where.constData(), MNT_DETACH);
        else
            QFile::setPermissions(settingsFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QFileInfo(previous).absolutePath());
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QFileInfo(previous).absolutePath());
        QVERIFY(readOnly);

        QCOMPARE(lines,
                 QStringList{QStringLiteral("midi_exit\r")} + knobLines() +
                     QStringList{QStringLiteral("Error saving configuration: the settings file could not be written")});
        // The table in memory still holds the edit, and the journal keeps it
        // for the next start.
        QCOMPARE(configuration.settings.mid(27, 3), note_on_4_10);
        std::vector<OrphanJournal> left = claim_orphan_journals();
        QCOMPARE(left.size(), size_t(1));
        QCOMPARE(left[0].edits, QList<JournalEdit>({{9, "Note On", "4", "10"}}));
        remove_orphan(left[0]);
    }

    void theOfferIsReachedByTabNamedAndPressed()
    {
        harness.destroy();
        QDir().mkpath(state_folder());
        write_test_file(state_folder() + QStringLiteral("/window-1-2.journal"),
                        encode_journal({{4, "Control Change", "2", "74"}}, QDateTime::currentDateTimeUtc()));
        QVERIFY(harness.open());
        QQuickItem* restore = harness.item(QStringLiteral("restoreEditsButton"));
        QQuickItem* dismiss = harness.item(QStringLiteral("dismissEditsButton"));
        QVERIFY(restore && restore->isVisible() && dismiss && dismiss->isVisible());
        QCOMPARE(harness.item(QStringLiteral("restoreOfferText"))->property("text").toString(),
                 QStringLiteral("恢复上次未保存的修改(Restore unsaved edits)"));

        // In the Tab order right after the text area's frame, under which
        // the offer stands.
        QQuickItem* frame = harness.item(QStringLiteral("textAreaFrame"));
        bool reached = false;
        for (int i = 0; i < 200 && !reached; ++i) {
            QTest::keyClick(harness.window(), Qt::Key_Tab);
            reached = harness.window()->activeFocusItem() == frame;
        }
        QVERIFY(reached);
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), restore);
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), dismiss);

        QAccessibleInterface* restoreAccess = QAccessible::queryAccessibleInterface(restore);
        QAccessibleInterface* dismissAccess = QAccessible::queryAccessibleInterface(dismiss);
        QVERIFY(restoreAccess && dismissAccess);
        QCOMPARE(restoreAccess->text(QAccessible::Name), QStringLiteral("恢复上次未保存的修改(Restore unsaved edits)"));
        QCOMPARE(dismissAccess->text(QAccessible::Name),
                 QStringLiteral("不恢复, 修改留作文件(Dismiss unsaved edits, keep them as a file)"));
        QVERIFY(restoreAccess->actionInterface());
        restoreAccess->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(shown(4), cc_2_74);
        QVERIFY(!restore->isVisible());
        QVERIFY(!QFileInfo::exists(state_folder() + QStringLiteral("/window-1-2.journal")));
        ConsoleCapture quiet;
        harness.close();
        quiet.finish();
        // The first window of this test stored its table when it went, so
        // this one loaded it padded to 300 slots.
        QCOMPARE(stored(), storedJson(windowTable({{4, cc_2_74}}, 219)));
    }
};

DIALCRAFT_UI_TEST_MAIN(TableSyncTest)
#include "table_sync_test.moc"
