// The status line around the import and export: a warning naming the working
// knobs whose empty fields will shift the lines after them on import, where
// the file was saved, and how many slots an import read from which file. The
// printed lines, the file's bytes and the text area stay as they were.
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "ui/dialogs/file_dialog_flow.h"
#include "ui/status/import_offer.h"
#include "ui/status/status_texts.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

class TransferNotesTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        set_midi_host(&sim);
        QSettings().clear();
        QVERIFY(dir.isValid());
        QVERIFY(harness.open());
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
    }

    void knobListJoinsRuns()
    {
        QCOMPARE(knob_list_text({}), QString());
        QCOMPARE(knob_list_text({4}), QStringLiteral("4"));
        QCOMPARE(knob_list_text({0, 1, 2, 5, 7, 8}), QStringLiteral("0-2, 5, 7, 8"));
        QCOMPARE(knob_list_text({3, 4, 5, 9, 20, 21, 22, 23}), QStringLiteral("3-5, 9, 20-23"));
    }

    void exportOfAFirstStartWarnsAboutEveryKnob()
    {
        harness.click(harness.item(QStringLiteral("exportButton")));
        const QString warning = QStringLiteral(
            "注意: 旋钮 0-26 有空字段, 导入时其后各行将错位"
            "(Knobs 0-26 have empty fields; on import the lines after them shift)");
        QCOMPARE(statusMessage(), warning);
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));

        const QString path = dir.filePath(QStringLiteral("first-start.txt"));
        ConsoleCapture capture;
        QVERIFY(harness.acceptFileDialog(harness.saveDialog(), dir.path(), QStringLiteral("first-start.txt")));
        QCOMPARE(capture.finishLines(), QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)});

        QCOMPARE(statusMessage(), QStringLiteral("已保存到(Saved to) ") + path + u'\n' + warning);
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));
        // The file is written exactly as without the warning: empty lines stay.
        QStringList expected;
        for (int knob = 0; knob <= 26; ++knob)
            expected << QStringLiteral("Control Change") << QString() << QStringLiteral("127");
        for (int slot = 81; slot < 90; ++slot)
            expected << QString(20, u' ');
        QCOMPARE(read_test_file(path), expected.join(u'\n').toUtf8());
    }

    void exportNamesOnlyTheKnobsWithEmptyFields()
    {
        for (int knob = 0; knob <= 26; ++knob)
            harness.state()->record(knob)->set_message_channel_menu_string(QStringLiteral("1"));
        harness.state()->record(3)->set_message_channel_menu_string(QString());
        harness.state()->record(4)->set_message_channel_menu_string(QString());
        harness.state()->record(5)->set_message_controller_number_code_string(QString());
        harness.state()->record(9)->set_message_channel_menu_string(QString());
        harness.state()->record(9)->set_message_controller_number_code_string(QString());

        harness.click(harness.item(QStringLiteral("exportButton")));
        QCOMPARE(statusMessage(),
                 QStringLiteral("注意: 旋钮 3-5, 9 有空字段, 导入时其后各行将错位"
                                "(Knobs 3-5, 9 have empty fields; on import the lines after them shift)"));
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
    }

    void exportWithoutEmptyFieldsShowsOnlyWhereTheFileWent()
    {
        for (int knob = 0; knob <= 26; ++knob)
            harness.state()->record(knob)->set_message_channel_menu_string(QStringLiteral("16"));

        harness.click(harness.item(QStringLiteral("exportButton")));
        QCOMPARE(statusMessage(), QString());
        QVERIFY(harness.acceptFileDialog(harness.saveDialog(), dir.path(), QStringLiteral("full.txt")));

        QCOMPARE(statusMessage(), QStringLiteral("已保存到(Saved to) ") + dir.filePath(QStringLiteral("full.txt")));
    }

    void failedSaveSaysWhy()
    {
        harness.click(harness.item(QStringLiteral("exportButton")));
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
        ConsoleCapture capture;
        QMetaObject::invokeMethod(dialogFlow(), "exportCompleted",
                                  Q_ARG(QUrl, QUrl::fromLocalFile(dir.filePath(QStringLiteral("no folder/x.txt")))));
        const QStringList lines = capture.finishLines();
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().startsWith(QStringLiteral("Failed to write file: ")));
        QCOMPARE(statusMessage(), QStringLiteral("未能保存(Not saved): ") +
                                      lines.first().mid(QStringLiteral("Failed to write file: ").size()));
    }

    void importSaysHowManySlotsWereReadFromWhichFile()
    {
        const QString path = dir.filePath(QStringLiteral("six.txt"));
        write_test_file(path, "Note On\n1\n60\n\nBend Change\n16\n0\n");
        harness.click(harness.item(QStringLiteral("importButton")));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导入文件:\n导入配置文件"));

        ConsoleCapture capture;
        QVERIFY(harness.acceptFileDialog(harness.openDialog(), dir.path(), QStringLiteral("six.txt")));
        const QString expected = QStringLiteral("已从 ") + path + QStringLiteral(" 读取6个槽位(6 slots read from ") +
                                 path +
                                 QStringLiteral(
                                     "); 丢弃了1个空行, 其后的旋钮都前移了(1 empty line dropped; every later knob "
                                     "moved up)\n面板仍显示导入前的值(the panels still show the values from before)");
        QTRY_COMPARE(statusMessage(), expected);
        const QStringList lines = capture.finishLines();

        // The import's own lines, in their order; nothing of the status line.
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines.at(0), QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
        QVERIFY(lines.at(1).startsWith(QStringLiteral("PPP Loaded settings: [")));
        QCOMPARE(lines.at(2), QStringLiteral("Expanded configuration.settings to 300 elements"));
        QCOMPARE(lines.at(3), QStringLiteral("Updated configuration.settings count: 300"));
        QVERIFY(
            lines.at(4).startsWith(QStringLiteral("First 10 elements: [\"Note On\", \"1\", \"60\", \"Bend Change\"")));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导入文件:\n导入配置文件"));
        // The panels still show the table from before the import.
        QCOMPARE(harness.state()->record(0)->message_type_menu_string(), QStringLiteral("选择消息类型"));
    }

    void importWithoutEmptyLinesSaysNothingWasDropped()
    {
        const QString path = dir.filePath(QStringLiteral("three.txt"));
        write_test_file(path, "Note On\n1\n60\n\n\n");
        importFile(QStringLiteral("three.txt"));
        QTRY_COMPARE(statusMessage(),
                     QStringLiteral("已从 ") + path + QStringLiteral(" 读取3个槽位(3 slots read from ") + path +
                         QStringLiteral(")\n面板仍显示导入前的值(the panels still show the values from before)"));
    }

    void importOffersToShowTheImportedValues()
    {
        write_test_file(dir.filePath(QStringLiteral("six.txt")), "Note On\n1\n60\n\nBend Change\n16\n0\n");
        QVERIFY(!offer()->isVisible());
        importFile(QStringLiteral("six.txt"));
        QTRY_VERIFY(offer()->isVisible());
        QCOMPARE(harness.item(QStringLiteral("importOfferText"))->property("text").toString(),
                 QStringLiteral("关闭窗口会保存面板显示的值, 导入的值将丢失"
                                "(closing keeps what the panels show; the imported values are lost)"));
        QVERIFY(harness.item(QStringLiteral("importOfferSymbol"))->isVisible());
        QQuickItem* button = showButton();
        QCOMPARE(button->property("text").toString(), QStringLiteral("显示导入的值(Show imported values)"));
        QCOMPARE(accessibleName(button), QStringLiteral("显示导入的值(Show imported values)"));
        QVERIFY(button->property("activeFocusOnTab").toBool());
        // The panels keep the values from before until the user asks.
        QCOMPARE(harness.state()->record(0)->message_type_menu_string(), QStringLiteral("选择消息类型"));

        // Reached with Tab from the text area's frame, pressed with Space.
        harness.item(QStringLiteral("textAreaFrame"))->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QTRY_VERIFY(button->hasActiveFocus());
        QVERIFY(harness.focusFrameOn(button));
        ConsoleCapture capture;
        QTest::keyClick(harness.window(), Qt::Key_Space);
        QCOMPARE(capture.finish(), std::string());

        CreateSetupAreaViewData* first = harness.state()->record(0);
        QCOMPARE(first->message_type_menu_string(), QStringLiteral("Note On"));
        QCOMPARE(first->message_channel_menu_string(), QStringLiteral("1"));
        QCOMPARE(first->message_controller_number_code_string(), QStringLiteral("60"));
        // The empty line was dropped: knob 1 took the slots after it.
        CreateSetupAreaViewData* second = harness.state()->record(1);
        QCOMPARE(second->message_type_menu_string(), QStringLiteral("Bend Change"));
        QCOMPARE(second->message_channel_menu_string(), QStringLiteral("16"));
        QCOMPARE(second->message_controller_number_code_string(), QStringLiteral("0"));
        QTRY_VERIFY(!offer()->isVisible());
        QCOMPARE(statusMessage(), QStringLiteral("面板已显示导入的值(the panels show the imported values)"));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导入文件:\n导入配置文件"));
    }

    void offerStandsUntilTheNextImport()
    {
        write_test_file(dir.filePath(QStringLiteral("a.txt")), "Note On\n1\n60\n");
        write_test_file(dir.filePath(QStringLiteral("b.txt")), "Note Off\n2\n61\n");
        importFile(QStringLiteral("a.txt"));
        QTRY_VERIFY(offer()->isVisible());
        // A cancelled import changes nothing: the offer stands.
        harness.click(harness.item(QStringLiteral("importButton")));
        QVERIFY(harness.cancelFileDialog(harness.openDialog()));
        QVERIFY(offer()->isVisible());
        // The next import refreshes the panels from the table first (they now
        // show the first file) and offers the second file's values.
        bool withdrawn = false;
        ImportOffer* state = WindowStatus::of(*harness.state())->importOffer();
        connect(state, &ImportOffer::offeredChanged, this, [&] { withdrawn = withdrawn || !state->offered(); });
        importFile(QStringLiteral("b.txt"));
        QTRY_VERIFY(withdrawn && offer()->isVisible());
        QCOMPARE(harness.state()->record(0)->message_type_menu_string(), QStringLiteral("Note On"));
    }

    void unreadableFileIsNamed()
    {
        ConsoleCapture capture;
        const QUrl missing = QUrl::fromLocalFile(dir.filePath(QStringLiteral("gone.txt")));
        QMetaObject::invokeMethod(dialogFlow(), "importCompleted", Q_ARG(QUrl, missing));
        QTest::qWait(20);
        const QStringList lines = capture.finishLines();
        QVERIFY(lines.value(1).startsWith(QStringLiteral("Failed to read file: ")));
        QCOMPARE(statusMessage(),
                 QStringLiteral("未能读取(Could not read) ") + dir.filePath(QStringLiteral("gone.txt")));
    }

private:
    void importFile(const QString& name)
    {
        harness.click(harness.item(QStringLiteral("importButton")));
        QVERIFY(harness.acceptFileDialog(harness.openDialog(), dir.path(), name));
    }
    QQuickItem* offer() const { return harness.item(QStringLiteral("importOffer")); }
    QQuickItem* showButton() const { return harness.item(QStringLiteral("showImportedButton")); }
    static QString accessibleName(QQuickItem* item)
    {
        for (QObject* child : item->children()) {
            if (qstrcmp(child->metaObject()->className(), "QQuickAccessibleAttached") == 0)
                return child->property("name").toString();
        }
        return QString();
    }
    QObject* dialogFlow()
    {
        harness.makeFileDialogs();
        return harness.window()->findChild<FileDialogFlow*>();
    }
    QString statusMessage() const { return harness.item(QStringLiteral("statusMessage"))->property("text").toString(); }

    SimMidiHost sim;
    QTemporaryDir dir;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(TransferNotesTest)
#include "transfer_notes_test.moc"
