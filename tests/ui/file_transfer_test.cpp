// The toolbar's import and export buttons with their file dialogs. The dialogs
// are completed through their own controls, as a user completes them.
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "model/configuration.h"
#include "window_harness.h"

using namespace dialcraft;

class FileTransferTest : public WindowTest {
    Q_OBJECT

public:
    FileTransferTest() : WindowTest(Open::inInit) {}

private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void toolbarHoldsImportThenExport()
    {
        QQuickItem* import = harness.item(QStringLiteral("importButton"), toolBar());
        QQuickItem* exportButton = harness.item(QStringLiteral("exportButton"), toolBar());
        QVERIFY(import && exportButton);
        QCOMPARE(import->property("text").toString(), QStringLiteral("导入配置(Import Config)"));
        QCOMPARE(exportButton->property("text").toString(), QStringLiteral("导出配置(Export Config)"));
        QVERIFY(import->mapToScene({0, 0}).x() < exportButton->mapToScene({0, 0}).x());
        // The bar is the window's top bar, above the knob rows.
        QVERIFY(toolBar()->mapToScene({0, toolBar()->height()}).y() <=
                harness.item(QStringLiteral("knobRow0"))->mapToScene({0, 0}).y());
        harness.makeFileDialogs();
        for (QObject* dialog : {harness.openDialog(), harness.saveDialog()})
            QCOMPARE(dialog->property("nameFilters").toStringList(),
                     QStringList{QStringLiteral("文本文件（Text files） (*.txt)")});
    }

    void exportWritesTheTableAsLines()
    {
        QQuickItem* panel = harness.panelShowingRecord(5);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Control Change")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("2"));
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), QStringLiteral("74"));

        harness.click(harness.item(QStringLiteral("exportButton"), toolBar()));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));
        QCOMPARE(textArea(), QStringLiteral("导出文件:\n导出配置文件"));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        // No file name of its own is proposed.
        QCOMPARE(harness.saveDialog()->property("selectedFile").toUrl().fileName(), QString());

        const QString path = dir.filePath(QStringLiteral("knobs.txt"));
        ConsoleCapture capture;
        const bool saved = harness.acceptFileDialog(harness.saveDialog(), dir.path(), QStringLiteral("knobs.txt"));
        const QStringList lines = capture.finishLines();

        QVERIFY(saved);
        QCOMPARE(lines, QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)});
        QVERIFY(!harness.saveDialog()->property("visible").toBool());
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));

        // Knobs 0 to 26 as the panels show them, a never-chosen type written as
        // Control Change; then the untouched blank slots of knobs 27 to 29.
        QStringList expectedLines;
        for (int knob = 0; knob <= 26; ++knob) {
            if (knob == 5)
                expectedLines << QStringLiteral("Control Change") << QStringLiteral("2") << QStringLiteral("74");
            else
                expectedLines << QStringLiteral("Control Change") << QString() << QStringLiteral("127");
        }
        for (int slot = 81; slot < 90; ++slot)
            expectedLines << QString(20, QLatin1Char(' '));
        QCOMPARE(read_test_file(path), expectedLines.join(QLatin1Char('\n')).toUtf8());
    }

    void importRefreshesPanelsOnlyFromTheTableAsItWas()
    {
        const QString first = dir.filePath(QStringLiteral("first.txt"));
        write_test_file(first, "Note On\n1\n60\nBend Change\n16\n0\n");
        const QString second = dir.filePath(QStringLiteral("second.txt"));
        write_test_file(second, "");
        CreateSetupAreaViewData* knob0 = harness.state()->record(0);
        QQuickItem* panel0 = harness.panelShowingRecord(0);

        harness.click(harness.item(QStringLiteral("importButton"), toolBar()));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导入文件:\n导入配置文件"));
        QCOMPARE(textArea(), QStringLiteral("导入文件:\n导入配置文件"));
        QTRY_VERIFY(harness.openDialog()->property("visible").toBool());

        ConsoleCapture capture;
        const bool opened = harness.acceptFileDialog(harness.openDialog(), dir.path(), QStringLiteral("first.txt"));
        QTest::qWait(50);  // the file's slots are applied on the event loop
        const QStringList lines = capture.finishLines();

        QVERIFY(opened);
        QCOMPARE(lines.value(0), QUrl::fromLocalFile(first).toString(QUrl::FullyEncoded));
        QVERIFY(lines.value(1).startsWith(QStringLiteral("PPP Loaded settings: [\"                    \"")));
        QCOMPARE(lines.value(2), QStringLiteral("Expanded configuration.settings to 300 elements"));
        QCOMPARE(lines.value(3), QStringLiteral("Updated configuration.settings count: 300"));
        // The panels still show what they showed before.
        QCOMPARE(knob0->message_type_menu_string(), QStringLiteral("选择消息类型"));
        QCOMPARE(knob0->message_channel_menu_string(), QString());
        QCOMPARE(knob0->message_controller_number_code_string(), QStringLiteral("127"));
        QCOMPARE(harness.item(QStringLiteral("typeMenu"), panel0)->property("displayText").toString(),
                 QStringLiteral("选择消息类型"));
        QCOMPARE(configuration.settings.mid(0, 6),
                 QStringList({QStringLiteral("Note On"), QStringLiteral("1"), QStringLiteral("60"),
                              QStringLiteral("Bend Change"), QStringLiteral("16"), QStringLiteral("0")}));

        // The next import of any file refreshes the panels from the first one.
        harness.click(harness.item(QStringLiteral("importButton"), toolBar()));
        QTRY_VERIFY(harness.openDialog()->property("visible").toBool());
        ConsoleCapture quiet;
        const bool reopened = harness.acceptFileDialog(harness.openDialog(), dir.path(), QStringLiteral("second.txt"));
        QTest::qWait(50);
        quiet.finish();
        QVERIFY(reopened);

        QCOMPARE(knob0->message_type_menu_string(), QStringLiteral("Note On"));
        QCOMPARE(knob0->message_channel_menu_string(), QStringLiteral("1"));
        QCOMPARE(knob0->message_controller_number_code_string(), QStringLiteral("60"));
        QCOMPARE(harness.item(QStringLiteral("typeMenu"), panel0)->property("displayText").toString(),
                 QStringLiteral("Note On"));
        QCOMPARE(harness.item(QStringLiteral("channelField"), panel0)->property("text").toString(),
                 QStringLiteral("1"));
        QCOMPARE(harness.item(QStringLiteral("controllerField"), panel0)->property("text").toString(),
                 QStringLiteral("60"));
        QCOMPARE(harness.state()->record(1)->message_type_menu_string(), QStringLiteral("Bend Change"));
        QCOMPARE(configuration.settings, QStringList(300, QString(20, QLatin1Char(' '))));
    }

    void cancellingKeepsTheButtonsText()
    {
        harness.click(harness.item(QStringLiteral("importButton"), toolBar()));
        QTRY_VERIFY(harness.openDialog()->property("visible").toBool());
        const QStringList table = configuration.settings;

        ConsoleCapture capture;
        const bool cancelled = harness.cancelFileDialog(harness.openDialog());
        const QByteArray printed = QByteArray::fromStdString(capture.finish());

        QVERIFY(cancelled);
        QVERIFY(!harness.openDialog()->property("visible").toBool());
        QCOMPARE(printed, QByteArray());
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导入文件:\n导入配置文件"));
        QCOMPARE(textArea(), QStringLiteral("导入文件:\n导入配置文件"));
        QCOMPARE(configuration.settings, table);

        // The dialog opens again on the next press.
        harness.click(harness.item(QStringLiteral("exportButton"), toolBar()));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));
        harness.click(harness.item(QStringLiteral("importButton"), toolBar()));
        QTRY_VERIFY(harness.openDialog()->property("visible").toBool());
    }

private:
    QQuickItem* toolBar() const { return harness.window()->property("header").value<QQuickItem*>(); }
    QString textArea() const { return harness.item(QStringLiteral("textArea"))->property("text").toString(); }

    QTemporaryDir dir;
};

DIALCRAFT_UI_TEST_MAIN(FileTransferTest)
#include "file_transfer_test.moc"
