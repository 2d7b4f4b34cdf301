// What a start makes: the file dialogs, with their plugin and the overwrite
// question, which the window's first frame does not show, are not made until
// first used, and work once they are.
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include "ui/dialogs/file_dialog_flow.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

// True when the shared library whose file name starts with `name` is mapped
// into this process.
bool library_loaded(const QByteArray& name)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return false;
    return maps.readAll().contains('/' + name);
}

const char* const dialog_parts[] = {"fileDialogs", "openDialog", "saveDialog", "saveDialogFallback",
                                    "overwriteQuestion"};

}  // namespace

class FirstFramePartsTest : public WindowTest {
    Q_OBJECT

public:
    FirstFramePartsTest() : WindowTest(Open::inInit) {}

private slots:
    // First in this program: nothing before it can have loaded the dialogs.
    void startMakesNoFileDialogs()
    {
        waitForAFrame();
        for (const char* name : dialog_parts)
            QVERIFY2(!harness.window()->findChild<QObject*>(QString::fromLatin1(name)), name);
        QVERIFY(!harness.window()->findChild<FileDialogFlow*>());
        QVERIFY(!library_loaded("libQt6QuickDialogs2"));
        QVERIFY(!library_loaded("libqtquickdialogsplugin"));
    }

    void importMakesTheDialogsThatThenWork()
    {
        harness.click(harness.item(QStringLiteral("importButton")));
        QObject* open = harness.openDialog();
        QVERIFY(open);
        QTRY_VERIFY(open->property("visible").toBool());
        QVERIFY(library_loaded("libqtquickdialogsplugin"));
        for (const char* name : dialog_parts)
            QVERIFY2(harness.window()->findChild<QObject*>(QString::fromLatin1(name)), name);
        QVERIFY(harness.cancelFileDialog(open));
        QCOMPARE(harness.window()->findChild<FileDialogFlow*>()->importing(), false);

        // The second press finds the same dialogs.
        harness.click(harness.item(QStringLiteral("exportButton")));
        QCOMPARE(harness.window()->findChildren<FileDialogFlow*>().size(), 1);
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
    }

    void exportAloneMakesTheDialogs()
    {
        QVERIFY(!harness.saveDialog());
        harness.click(harness.item(QStringLiteral("exportButton")));
        QVERIFY(harness.saveDialog());
        QTRY_VERIFY(harness.saveDialog()->property("visible").toBool());
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
    }

private:
    void waitForAFrame()
    {
        QSignalSpy frames(harness.window(), &QQuickWindow::frameSwapped);
        harness.window()->update();
        QVERIFY(frames.wait());
    }
};

DIALCRAFT_UI_TEST_MAIN(FirstFramePartsTest)
#include "first_frame_parts_test.moc"
