// The file dialogs' workflow without a window: which flag each button and
// each dialog completion raises or lowers, and that the transfer's steps run
// after the flag is raised.
#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include "console_capture.h"
#include "model/configuration.h"
#include "model/global_state.h"
#include "model/handover.h"
#include "ui/dialogs/file_dialog_flow.h"
#include "window_harness.h"

using namespace dialcraft;

class FileDialogFlowTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        configuration = Configuration{initialSettings()};
        device_connect_state_retval.assign(36, 0);
        flow = std::make_unique<FileDialogFlow>();
        state = std::make_unique<GlobalState>();
        flow->setGlobalState(state.get());
    }
    void cleanup()
    {
        flow.reset();
        QCoreApplication::sendPostedEvents();
        state.reset();
        configuration = Configuration{initialSettings()};
    }

    void startsIdleWithTheTransfersDocument()
    {
        FileDialogFlow fresh;
        QVERIFY(!fresh.importing());
        QVERIFY(!fresh.exporting());
        QVERIFY(fresh.transfer());
        QCOMPARE(fresh.transfer()->parent(), &fresh);
        QCOMPARE(fresh.transfer()->document.text, QStringLiteral("123"));
        QCOMPARE(fresh.globalState(), nullptr);
    }

    void globalStateIsTheTransfers()
    {
        FileDialogFlow fresh;
        QSignalSpy changed(&fresh, &FileDialogFlow::globalStateChanged);
        fresh.setGlobalState(state.get());
        QCOMPARE(fresh.transfer()->globalState(), state.get());
        QCOMPARE(fresh.globalState(), state.get());
        QCOMPARE(changed.count(), 1);
    }

    void exportPressRaisesTheSaveDialogBeforeTheExportSteps()
    {
        QString textWhenRaised = QStringLiteral("<not raised>");
        connect(flow.get(), &FileDialogFlow::exportingChanged, this, [&] { textWhenRaised = state->fullText(); });
        QSignalSpy exporting(flow.get(), &FileDialogFlow::exportingChanged);
        state->setFullText(QStringLiteral("before"));
        ConsoleCapture capture;
        flow->exportButtonPressed();
        QCOMPARE(capture.finishLines().size(), 27);  // the table's access lines of knobs 0 to 26
        QCOMPARE(exporting.count(), 1);
        QCOMPARE(textWhenRaised, QStringLiteral("before"));
        QVERIFY(flow->exporting());
        QVERIFY(!flow->importing());
        QCOMPARE(state->fullText(), QStringLiteral("导出文件:\n导出配置文件"));
        QCOMPARE(flow->transfer()->document.text.count(u'\n'), 89);
    }

    void exportCompletedLowersTheFlagAndWritesTheDocument()
    {
        {
            ConsoleCapture quiet;
            flow->exportButtonPressed();
            quiet.finish();
        }
        const QUrl url = QUrl::fromLocalFile(dir.filePath(QStringLiteral("knobs.txt")));
        ConsoleCapture capture;
        flow->exportCompleted(url);
        QCOMPARE(capture.finishLines(), QStringList{url.toString(QUrl::FullyEncoded)});
        QVERIFY(!flow->exporting());
        QCOMPARE(read_test_file(url.toLocalFile()), flow->transfer()->document.text.toUtf8());
    }

    void exportThatCannotWriteStillLowersTheFlag()
    {
        flow->setExporting(true);
        ConsoleCapture capture;
        flow->exportCompleted(QUrl::fromLocalFile(dir.filePath(QStringLiteral("missing folder/knobs.txt"))));
        const QStringList lines = capture.finishLines();
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().startsWith(QStringLiteral("Failed to write file: ")));
        QVERIFY(!flow->exporting());
    }

    void dialogErrorsLowerTheirFlagAndArePrintedAsGiven()
    {
        flow->setExporting(true);
        {
            ConsoleCapture capture;
            flow->exportFailed(QStringLiteral("The disk is full."));
            QCOMPARE(capture.finishLines(), QStringList{QStringLiteral("The disk is full.")});
        }
        QVERIFY(!flow->exporting());
        flow->importButtonPressed();
        configuration.settings = {QStringLiteral("kept")};
        {
            ConsoleCapture capture;
            flow->importFailed(QStringLiteral("无法打开"));
            QCOMPARE(capture.finishLines(), QStringList{QStringLiteral("无法打开")});
        }
        QCoreApplication::sendPostedEvents();
        QVERIFY(!flow->importing());
        QCOMPARE(configuration.settings, QStringList{QStringLiteral("kept")});
        QCOMPARE(flow->transfer()->fileURLString(), QString());
    }

    void importPressRaisesTheOpenDialogBeforeTheStatusText()
    {
        QString textWhenRaised = QStringLiteral("<not raised>");
        connect(flow.get(), &FileDialogFlow::importingChanged, this, [&] { textWhenRaised = state->fullText(); });
        QSignalSpy importing(flow.get(), &FileDialogFlow::importingChanged);
        state->setFullText(QStringLiteral("before"));
        ConsoleCapture capture;
        flow->importButtonPressed();
        QVERIFY(capture.finish().empty());
        QCOMPARE(importing.count(), 1);
        QCOMPARE(textWhenRaised, QStringLiteral("before"));
        QVERIFY(flow->importing());
        QVERIFY(!flow->exporting());
        QCOMPARE(state->fullText(), QStringLiteral("导入文件:\n导入配置文件"));
    }

    void importCompletedLowersTheFlagAndImportsTheFile()
    {
        const QString path = dir.filePath(QStringLiteral("three.txt"));
        write_test_file(path, "Note On\n1\n60");
        QSignalSpy importing(flow.get(), &FileDialogFlow::importingChanged);
        QSignalSpy url(flow->transfer(), &ConfigFileTransfer::fileURLStringChanged);
        flow->importButtonPressed();
        {
            ConsoleCapture capture;
            flow->importCompleted(QUrl::fromLocalFile(path));
            const QStringList lines = capture.finishLines();
            QCOMPARE(lines.value(0), QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
            QVERIFY(lines.value(1).startsWith(QStringLiteral("PPP Loaded settings: [")));
        }
        QVERIFY(!flow->importing());
        QCOMPARE(importing.count(), 2);
        QCOMPARE(url.count(), 1);
        ConsoleCapture capture;
        QCoreApplication::sendPostedEvents();
        capture.finish();
        QCOMPARE(flow->transfer()->documentText(), QStringLiteral("Note On\n1\n60"));
        QCOMPARE(configuration.settings.size(), 300);
    }

    void cancelledDialogsOnlyLowerTheirFlags()
    {
        flow->importButtonPressed();
        flow->setExporting(true);
        state->setFullText(QStringLiteral("unchanged"));
        ConsoleCapture capture;
        flow->dialogCancelled();
        QVERIFY(capture.finish().empty());
        QVERIFY(!flow->importing());
        QVERIFY(!flow->exporting());
        QCOMPARE(state->fullText(), QStringLiteral("unchanged"));
        QCOMPARE(configuration.settings, QStringList(90, QStringLiteral("                    ")));
    }

private:
    QTemporaryDir dir;
    std::unique_ptr<GlobalState> state;
    std::unique_ptr<FileDialogFlow> flow;
};

DIALCRAFT_UI_TEST_MAIN(FileDialogFlowTest)

#include "file_dialog_flow_test.moc"
