// What a start makes: the parts the window's first frame does not show (the
// file dialogs, with their plugin and the overwrite question; the open
// monitor's buttons, list and handle; the status line's offers) are not made
// until first needed, and work once they are. One focus frame serves every
// control, and one font file draws the first frame.
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include "ui/dialogs/file_dialog_flow.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

// The files mapped into this process, each once, by path.
QStringList mapped_files()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return {};
    QStringList files;
    for (const QByteArray& line : maps.readAll().split('\n')) {
        const qsizetype path = line.indexOf(" /");
        if (path < 0)
            continue;
        const QString file = QString::fromUtf8(line.mid(path + 1));
        if (!files.contains(file))
            files << file;
    }
    return files;
}

// True when the shared library whose file name starts with `name` is mapped
// into this process.
bool library_loaded(const QString& name)
{
    const QString slashed = QLatin1Char('/') + name;
    for (const QString& file : mapped_files())
        if (file.contains(slashed))
            return true;
    return false;
}

// The font files mapped into this process, by path.
QStringList mapped_font_files()
{
    QStringList fonts = mapped_files();
    fonts.removeIf([](const QString& file) { return !file.contains(QLatin1String("/fonts/")); });
    return fonts;
}

const char* const dialog_parts[] = {"fileDialogs", "openDialog", "saveDialog", "saveDialogFallback",
                                    "overwriteQuestion"};

const char* const monitor_parts[] = {"monitorPause", "monitorClear", "monitorLatest", "monitorList", "monitorResize"};

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
        for (const char* name : monitor_parts)
            QVERIFY2(!harness.item(QString::fromLatin1(name)), name);
        // Nor the status line's offers, none of which stands: their rows are
        // made when offered (table_sync and transfer_notes press them).
        for (const char* name :
             {"restoreOfferText", "restoreEditsButton", "dismissEditsButton", "importOfferText", "showImportedButton"})
            QVERIFY2(!harness.item(QString::fromLatin1(name)), name);
        QCOMPARE(harness.items(QStringLiteral("focusRing")).size(), 1);
        // One face draws the whole first frame: the set buttons' bold is the
        // regular face's outline, and every symbol shown is one it has, so
        // neither a bold file nor a fallback font is searched for and opened.
        const QStringList fonts = mapped_font_files();
        QVERIFY2(fonts.size() == 1 && fonts.first().endsWith(QLatin1String("NotoSansCJK-Regular.ttc")),
                 qPrintable(fonts.join(QLatin1String(", "))));
    }

    void openingTheMonitorMakesItsPartsThatThenWork()
    {
        QQuickItem* toggle = harness.item(QStringLiteral("monitorToggle"));
        harness.click(toggle);
        for (const char* name : monitor_parts) {
            QQuickItem* part = harness.item(QString::fromLatin1(name));
            QVERIFY2(part && part->isVisible() && part->width() > 0, name);
        }
        // The handle sets the list's height from the keyboard.
        QQuickItem* list = harness.item(QStringLiteral("monitorList"));
        const qreal before = list->height();
        harness.item(QStringLiteral("monitorResize"))->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(harness.window(), Qt::Key_Down);
        QTRY_COMPARE(list->height(), before + 20);
        // Closed, they are hidden and kept; opened again, the same parts show.
        harness.click(toggle);
        QTRY_VERIFY(!list->isVisible());
        harness.click(toggle);
        QCOMPARE(harness.item(QStringLiteral("monitorList")), list);
        QTRY_VERIFY(list->isVisible());
        QCOMPARE(list->height(), before + 20);
        harness.click(toggle);
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
