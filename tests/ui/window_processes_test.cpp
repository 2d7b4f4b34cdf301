// The window, dialcraft-cli and the program as processes of their own: an
// end by signal goes like a close, a second signal ends it at once, edits of
// a killed window are offered back at the next start, and two windows and
// the command line writing at once lose nothing.
#include <QDir>
#include <QElapsedTimer>
#include <QLockFile>
#include <QTest>

#include <csignal>

#include "process_support.h"

namespace {

const QStringList cc_2_74{QStringLiteral("Control Change"), QStringLiteral("2"), QStringLiteral("74")};
const QStringList note_on_1_60{QStringLiteral("Note On"), QStringLiteral("1"), QStringLiteral("60")};
const QStringList bend_3_9{QStringLiteral("Bend Change"), QStringLiteral("3"), QStringLiteral("9")};
const QString placeholder_panel = QStringLiteral("选择消息类型||127");

}  // namespace

class WindowProcessesTest : public QObject {
    Q_OBJECT

private slots:
    void longSessionsEndCleanlyWhenClosed()
    {
        // A window closed after a long session once ended with a crash
        // after storing the table; each of these must end normally.
        ProcessHome home;
        for (int round = 0; round < 4; ++round) {
            WindowProcess window(home);
            QVERIFY(window.ready());
            QCOMPARE(window.ask(QStringLiteral("session")), QStringLiteral("session done"));
            QCOMPARE(window.ask(QStringLiteral("close")), QStringLiteral("closing"));
            QVERIFY(window.finish());
            QCOMPARE(window.process().exitStatus(), QProcess::NormalExit);
            QCOMPARE(window.process().exitCode(), 0);
            QCOMPARE(home.stateFiles(), QStringList());
        }
    }

    void aSignalEndsTheWindowLikeAClose_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void aSignalEndsTheWindowLikeAClose()
    {
        QFETCH(int, signalNumber);
        ProcessHome home;
        WindowProcess window(home);
        QVERIFY(window.ready());
        QCOMPARE(window.ask(QStringLiteral("edit 5|Control Change|2|74")),
                 QStringLiteral("panel 5: Control Change|2|74"));
        window.signal(signalNumber);
        QVERIFY(window.finish());
        QCOMPARE(window.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(window.process().exitCode(), 0);
        QCOMPARE(window.outputLines(), start_lines(false) + shut_down_lines());
        QCOMPARE(home.stored(), stored_json(window_table({{5, cc_2_74}}, 9)));
        // A clean end: no journal, no lock left.
        QCOMPARE(home.stateFiles(), QStringList());
    }

    void aSecondSignalDuringTheShutDownEndsAtOnce()
    {
        ProcessHome home;
        WindowProcess window(home);
        QVERIFY(window.ready());
        QVERIFY(window.ask(QStringLiteral("edit 5|Control Change|2|74")).startsWith("panel 5"));
        // The table's lock held here keeps the shut-down waiting at its save.
        QDir().mkpath(home.path(QStringLiteral("config/dialcraft")));
        QLockFile held(home.path(QStringLiteral("config/dialcraft/table.lock")));
        QVERIFY(held.tryLock(0));
        window.signal(SIGTERM);
        QTRY_COMPARE_WITH_TIMEOUT(window.outputLines(), start_lines(false) + shut_down_lines(), 10000);
        QElapsedTimer clock;
        clock.start();
        window.signal(SIGTERM);
        QVERIFY(window.finish(5000));
        QVERIFY(clock.elapsed() < 5000);
        QCOMPARE(window.process().exitStatus(), QProcess::CrashExit);
        QCOMPARE(home.stored(), QByteArray());
    }

    void aKilledWindowsEditsAreOfferedAndRestored()
    {
        ProcessHome home;
        const QString journal = killedWithKnob5Edited(home);
        QVERIFY(!journal.isEmpty());

        WindowProcess next(home);
        QVERIFY(next.ready());
        QCOMPARE(next.ask(QStringLiteral("offer")), QStringLiteral("offer: shown"));
        QCOMPARE(next.ask(QStringLiteral("panel 5")), QStringLiteral("panel 5: ") + placeholder_panel);
        QCOMPARE(next.ask(QStringLiteral("press restoreEditsButton")), QStringLiteral("pressed restoreEditsButton"));
        QCOMPARE(next.ask(QStringLiteral("panel 5")), QStringLiteral("panel 5: Control Change|2|74"));
        QCOMPARE(next.ask(QStringLiteral("offer")), QStringLiteral("offer: hidden"));
        QCOMPARE(next.ask(QStringLiteral("status")),
                 QStringLiteral("status: 已恢复 1 个旋钮的修改(edits of 1 knobs restored)"));
        QVERIFY(!QFile::exists(journal));
        next.signal(SIGTERM);
        QVERIFY(next.finish());
        QCOMPARE(next.process().exitCode(), 0);
        QCOMPARE(home.stored(), stored_json(window_table({{5, cc_2_74}}, 9)));
        QCOMPARE(home.stateFiles(), QStringList());
    }

    void dismissingKeepsTheJournalAsAFile()
    {
        ProcessHome home;
        const QString journal = killedWithKnob5Edited(home);
        QVERIFY(!journal.isEmpty());

        WindowProcess next(home);
        QVERIFY(next.ready());
        QCOMPARE(next.ask(QStringLiteral("offer")), QStringLiteral("offer: shown"));
        QCOMPARE(next.ask(QStringLiteral("press dismissEditsButton")), QStringLiteral("pressed dismissEditsButton"));
        QCOMPARE(next.ask(QStringLiteral("offer")), QStringLiteral("offer: hidden"));
        QCOMPARE(next.ask(QStringLiteral("panel 5")), QStringLiteral("panel 5: ") + placeholder_panel);
        const QStringList kept =
            QDir(home.stateFolder()).entryList({QFileInfo(journal).fileName() + ".dismissed-*"}, QDir::Files);
        QCOMPARE(kept.size(), 1);
        const QString keptPath = home.stateFolder() + '/' + kept.first();
        QCOMPARE(next.ask(QStringLiteral("status")),
                 QStringLiteral("status: 未恢复; 上次的修改保留在(not restored; the edits are kept in) ") + keptPath);
        QVERIFY(read_file(keptPath).contains("\"Control Change\""));
        next.signal(SIGTERM);
        QVERIFY(next.finish());
        // A third start offers nothing.
        WindowProcess third(home);
        QVERIFY(third.ready());
        QCOMPARE(third.ask(QStringLiteral("offer")), QStringLiteral("offer: hidden"));
    }

    void noOfferAfterACleanEnd()
    {
        ProcessHome home;
        {
            WindowProcess window(home);
            QVERIFY(window.ready());
            QVERIFY(window.ask(QStringLiteral("edit 5|Control Change|2|74")).startsWith("panel 5"));
            QVERIFY(window.ask(QStringLiteral("journal")).startsWith("journal: "));
            window.signal(SIGTERM);
            QVERIFY(window.finish());
        }
        QCOMPARE(home.stateFiles(), QStringList());
        WindowProcess next(home);
        QVERIFY(next.ready());
        QCOMPARE(next.ask(QStringLiteral("offer")), QStringLiteral("offer: hidden"));
        QCOMPARE(next.ask(QStringLiteral("panel 5")), QStringLiteral("panel 5: Control Change|2|74"));
    }

    void twoWindowsAndTheCommandLineLoseNothing()
    {
        ProcessHome home;
        WindowProcess first(home);
        WindowProcess second(home);
        QVERIFY(first.ready());
        QVERIFY(second.ready());
        QVERIFY(first.ask(QStringLiteral("edit 1|Note On|1|60")).startsWith("panel 1: Note On"));
        QVERIFY(second.ask(QStringLiteral("edit 2|Bend Change|3|9")).startsWith("panel 2: Bend Change"));

        const QString file = home.path(QStringLiteral("home/gig.txt"));
        write_file(file, knob_file({{7, cc_2_74}}));
        const CliResult cli = run_cli_process(home, {QStringLiteral("import"), file});
        QCOMPARE(cli.status, 0);
        QVERIFY2(cli.err.contains("dialcraft 窗口开着, 它会接过这个表(a dialcraft window is open and will take "
                                  "the table)"),
                 cli.err.constData());
        // Both windows take knob 7 and keep their own edits.
        for (WindowProcess* window : {&first, &second})
            QTRY_VERIFY_WITH_TIMEOUT(window->ask(QStringLiteral("panel 7")) == "panel 7: Control Change|2|74", 1000);

        // Both end at once; the lock puts their saves one after the other.
        first.signal(SIGTERM);
        second.signal(SIGTERM);
        QVERIFY(first.finish());
        QVERIFY(second.finish());
        QCOMPARE(first.process().exitCode(), 0);
        QCOMPARE(second.process().exitCode(), 0);
        QCOMPARE(home.stored(), stored_json(window_table({{1, note_on_1_60}, {2, bend_3_9}, {7, cc_2_74}}, 219)));
    }

    void aKnobChangedOnBothSidesIsNamedOnStandardError()
    {
        ProcessHome home;
        WindowProcess window(home);
        QVERIFY(window.ready());
        QVERIFY(window.ask(QStringLiteral("edit 0|Control Change|2|74")).startsWith("panel 0"));
        const QString file = home.path(QStringLiteral("home/gig.txt"));
        write_file(file, knob_file({{0, note_on_1_60}}));
        QCOMPARE(run_cli_process(home, {QStringLiteral("import"), file}).status, 0);
        const QByteArray line =
            "dialcraft: 两边都改了旋钮(both sides changed knobs) 0; 本窗口的值保留, 其他程序的值存入"
            "(the window's values are kept, the other program's values are in) " +
            home.path(QStringLiteral("config/dialcraft/conflict-")).toUtf8();
        QTRY_VERIFY_WITH_TIMEOUT(window.errors().contains(line), 1000);
        QVERIFY(window.ask(QStringLiteral("status")).contains(QStringLiteral("两边都改了旋钮 0")));
        window.signal(SIGTERM);
        QVERIFY(window.finish());
        QCOMPARE(window.outputLines(), start_lines(false) + shut_down_lines());
        QCOMPARE(home.stored(), stored_json(window_table({{0, cc_2_74}}, 219)));
    }

    void theProgramEndsLikeACloseOnSigterm()
    {
        ProcessHome home;
        QProcess program;
        program.setProcessEnvironment(home.environment());
        program.start(QStringLiteral(DIALCRAFT_PROGRAM), {});
        QByteArray out;
        QTRY_VERIFY_WITH_TIMEOUT((out += program.readAllStandardOutput()).contains("index: 26\n"), 30000);
        ::kill(pid_t(program.processId()), SIGTERM);
        QVERIFY(program.waitForFinished(30000));
        out += program.readAllStandardOutput();
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QVERIFY2(out.endsWith(shut_down_lines().join(u'\n').toUtf8() + '\n'), out.constData());
        QCOMPARE(home.stored(), stored_json(window_table({}, 9)));
        QCOMPARE(home.stateFiles(), QStringList());
    }

private:
    // A window whose knob 5 was edited and journaled, then killed; returns
    // the journal it left.
    static QString killedWithKnob5Edited(ProcessHome& home)
    {
        WindowProcess window(home);
        if (!window.ready() ||
            window.ask(QStringLiteral("edit 5|Control Change|2|74")) != "panel 5: Control Change|2|74")
            return {};
        // Journaled within the second, without being asked to.
        const QString folder = home.stateFolder();
        QElapsedTimer clock;
        clock.start();
        QString journal;
        while (journal.isEmpty() && clock.elapsed() < 1000) {
            const QStringList found = QDir(folder).entryList({QStringLiteral("window-*.journal")}, QDir::Files);
            if (!found.isEmpty() && read_file(folder + '/' + found.first()).contains("Control Change"))
                journal = folder + '/' + found.first();
            else
                QTest::qWait(20);
        }
        window.signal(SIGKILL);
        window.finish();
        return journal;
    }
    static QByteArray read_file(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void write_file(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
};

QTEST_GUILESS_MAIN(WindowProcessesTest)
#include "window_processes_test.moc"
