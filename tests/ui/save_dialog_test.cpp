// The file dialogs as a user meets them where the desktop offers no native
// ones (Qt's own dialogs, as on the offscreen platform): both start in the
// user's documents folder; the save dialog is a save dialog that proposes no
// name, takes a typed name at once, and asks before replacing a file.
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "ui/dialogs/dialog_files.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {
// Types `text` (ASCII) key by key into the window's focused item.
void typeKeys(QQuickWindow* window, const QString& text)
{
    for (const QChar c : text)
        QTest::keyClick(window, c.toLatin1());
}
}  // namespace

class SaveDialogTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        QVERIFY(documents.startsWith(home.path()));  // never the real user's folder
        QVERIFY(QDir().mkpath(documents));
    }
    void init()
    {
        set_midi_host(&sim);
        QSettings().clear();
        QDir(documents).removeRecursively();
        QVERIFY(QDir().mkpath(documents));
        QVERIFY(harness.open());
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
    }

    void bothDialogsStartInDocuments()
    {
        QCOMPARE(documents_folder_url(), QUrl::fromLocalFile(documents));
        harness.click(harness.item(QStringLiteral("importButton")));
        QTRY_VERIFY(harness.openDialog()->property("visible").toBool());
        QCOMPARE(harness.openDialog()->property("currentFolder").toUrl(), QUrl::fromLocalFile(documents));
        QVERIFY(harness.cancelFileDialog(harness.openDialog()));

        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QCOMPARE(harness.saveDialog()->property("currentFolder").toUrl(), QUrl::fromLocalFile(documents));
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
    }

    void saveDialogIsASaveDialogThatTakesATypedName()
    {
        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QCOMPARE(harness.saveDialog()->property("fileMode").toInt(), 2);      // FileDialog.SaveFile
        QVERIFY(!(harness.saveDialog()->property("options").toInt() & 0x4));  // DontConfirmOverwrite not set
        QCOMPARE(harness.saveDialog()->property("nameFilters").toStringList(),
                 QStringList{QStringLiteral("文本文件（Text files） (*.txt)")});
        QTRY_VERIFY(fallback()->property("active").toBool());  // Qt's own dialog here

        QQuickItem* save = acceptButton();
        QVERIFY(save);
        QCOMPARE(save->property("text").toString(), QStringLiteral("保存(Save)"));
        QQuickItem* name = harness.item(QStringLiteral("fileNameTextField"));
        QVERIFY(name && name->isVisible());
        QCOMPARE(name->property("text").toString(), QString());  // no name of its own
        QVERIFY(!save->isEnabled());

        // Typing enables the button at once, without Enter; clearing disables it.
        harness.replaceText(name, QStringLiteral("knobs.txt"));
        QVERIFY(save->isEnabled());
        harness.replaceText(name, QString());
        QVERIFY(!save->isEnabled());
        harness.replaceText(name, QStringLiteral("knobs.txt"));
        QVERIFY(save->isEnabled());

        ConsoleCapture capture;
        harness.click(save);  // one click saves
        QTRY_VERIFY(!harness.saveDialog()->property("visible").toBool());
        const QString path = QDir(documents).filePath(QStringLiteral("knobs.txt"));
        QCOMPARE(capture.finishLines(), QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)});
        QVERIFY(QFile::exists(path));
        QVERIFY(!question()->property("visible").toBool());
    }

    void replacingAFileIsConfirmedFirst()
    {
        const QString path = QDir(documents).filePath(QStringLiteral("knobs.txt"));
        write_test_file(path, "old");
        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        harness.replaceText(harness.item(QStringLiteral("fileNameTextField")), QStringLiteral("knobs.txt"));

        ConsoleCapture capture;
        harness.click(acceptButton());
        QTRY_VERIFY(question()->property("visible").toBool());
        QCOMPARE(read_test_file(path), QByteArray("old"));
        QCOMPARE(harness.item(QStringLiteral("overwriteText"))->property("text").toString(),
                 QStringLiteral("文件已存在,要替换它吗?(The file already exists. Replace it?)"));
        QVERIFY(harness.item(QStringLiteral("overwriteFile"))
                    ->property("text")
                    .toString()
                    .endsWith(QStringLiteral("knobs.txt")));

        // Cancel: back to the save dialog, nothing written.
        QCOMPARE(harness.window()->activeFocusItem(), harness.item(QStringLiteral("keepButton")));
        harness.click(harness.item(QStringLiteral("keepButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QVERIFY(!question()->property("visible").toBool());
        QCOMPARE(read_test_file(path), QByteArray("old"));
        QCOMPARE(QByteArray::fromStdString(capture.text()), QByteArray());

        // Replace: written, and the save's own line printed once.
        harness.click(acceptButton());
        QTRY_VERIFY(question()->property("visible").toBool());
        harness.click(harness.item(QStringLiteral("replaceButton")));
        QTRY_VERIFY(!question()->property("visible").toBool());
        QCOMPARE(capture.finishLines(), QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)});
        QVERIFY(read_test_file(path).startsWith("Control Change\n"));
        QVERIFY(!harness.saveDialog()->property("visible").toBool());
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));
    }

    void escapeOnTheQuestionKeepsTheFile()
    {
        const QString path = QDir(documents).filePath(QStringLiteral("kept.txt"));
        write_test_file(path, "old");
        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        harness.replaceText(harness.item(QStringLiteral("fileNameTextField")), QStringLiteral("kept.txt"));
        harness.click(acceptButton());
        QTRY_VERIFY(question()->property("visible").toBool());
        QTest::keyClick(harness.window(), Qt::Key_Escape);
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QCOMPARE(read_test_file(path), QByteArray("old"));
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
        QCOMPARE(read_test_file(path), QByteArray("old"));
    }

    void nameWithoutExtensionIsSavedAsTxtOnEnter()
    {
        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QTRY_VERIFY(fallback()->property("active").toBool());
        QQuickItem* name = harness.item(QStringLiteral("fileNameTextField"));
        name->forceActiveFocus();
        typeKeys(harness.window(), QStringLiteral("gig"));
        QCOMPARE(name->property("text").toString(), QStringLiteral("gig"));

        ConsoleCapture capture;
        QTest::keyClick(harness.window(), Qt::Key_Return);
        QTRY_VERIFY(!harness.saveDialog()->property("visible").toBool());
        const QString path = QDir(documents).filePath(QStringLiteral("gig.txt"));
        QCOMPARE(capture.finishLines(), QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)});
        QVERIFY(QFile::exists(path));
        QVERIFY(!QFile::exists(QDir(documents).filePath(QStringLiteral("gig"))));
    }

    void nameWithItsOwnExtensionIsKept()
    {
        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QTRY_VERIFY(fallback()->property("active").toBool());
        harness.replaceText(harness.item(QStringLiteral("fileNameTextField")), QStringLiteral("knobs.cfg"));
        harness.click(acceptButton());
        QTRY_VERIFY(!harness.saveDialog()->property("visible").toBool());
        QVERIFY(QFile::exists(QDir(documents).filePath(QStringLiteral("knobs.cfg"))));
        QVERIFY(!QFile::exists(QDir(documents).filePath(QStringLiteral("knobs.cfg.txt"))));
    }

    void everyExportStartsWithAnEmptyName()
    {
        for (const char* file : {"first", "second"}) {
            harness.click(harness.item(QStringLiteral("exportButton")));
            QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
            QTRY_VERIFY(fallback()->property("active").toBool());
            QQuickItem* name = harness.item(QStringLiteral("fileNameTextField"));
            QTRY_COMPARE(name->property("text").toString(), QString());
            QVERIFY(!acceptButton()->isEnabled());
            name->forceActiveFocus();
            typeKeys(harness.window(), QString::fromLatin1(file));
            QCOMPARE(name->property("text").toString(), QString::fromLatin1(file));
            QTest::keyClick(harness.window(), Qt::Key_Return);
            QTRY_VERIFY(!harness.saveDialog()->property("visible").toBool());
        }
        QVERIFY(QFile::exists(QDir(documents).filePath(QStringLiteral("first.txt"))));
        QVERIFY(QFile::exists(QDir(documents).filePath(QStringLiteral("second.txt"))));
    }

    void dialogsSpeakTheWindowsLanguage()
    {
        harness.click(harness.item(QStringLiteral("importButton")));
        QTRY_VERIFY(harness.openDialog()->property("visible").toBool());
        QTRY_VERIFY(visibleButton(QStringLiteral("打开(Open)")));
        QVERIFY(visibleButton(QStringLiteral("取消(Cancel)")));
        QVERIFY(visibleText(QStringLiteral("筛选(Filter)")));
        QVERIFY(harness.cancelFileDialog(harness.openDialog()));

        harness.click(harness.item(QStringLiteral("exportButton")));
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QTRY_VERIFY(fallback()->property("active").toBool());
        QVERIFY(visibleButton(QStringLiteral("保存(Save)")));
        QVERIFY(visibleButton(QStringLiteral("取消(Cancel)")));
        QVERIFY(visibleText(QStringLiteral("文件名(File name)")));
        QVERIFY(visibleText(QStringLiteral("筛选(Filter)")));
        QVERIFY(!visibleText(QStringLiteral("Filter")));
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
    }

private:
    bool visibleText(const QString& text) const
    {
        for (QQuickItem* item : harness.items(QString())) {
            if (item->isVisible() && item->property("text").toString() == text)
                return true;
        }
        return false;
    }
    QQuickItem* visibleButton(const QString& text) const
    {
        for (QQuickItem* item : harness.items(QString())) {
            if (item->isVisible() && item->inherits("QQuickAbstractButton") &&
                item->property("text").toString() == text)
                return item;
        }
        return nullptr;
    }
    QObject* fallback() const { return harness.window()->findChild<QObject*>(QStringLiteral("saveDialogFallback")); }
    QObject* question() const { return harness.window()->findChild<QObject*>(QStringLiteral("overwriteQuestion")); }
    QQuickItem* acceptButton() const
    {
        for (QQuickItem* item : harness.items(QString())) {
            if (item->isVisible() && item->inherits("QQuickAbstractButton") &&
                item->property("text").toString() == QStringLiteral("保存(Save)"))
                return item;
        }
        return nullptr;
    }

public:
    // A home folder of this test's own, so its documents folder is never the user's.
    static QTemporaryDir home;

private:
    QString documents;
    SimMidiHost sim;
    WindowHarness harness;
};

QTemporaryDir SaveDialogTest::home;

int main(int argc, char** argv)
{
    qputenv("HOME", SaveDialogTest::home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DOCUMENTS_DIR");
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    SaveDialogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "save_dialog_test.moc"
