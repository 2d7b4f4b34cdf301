// A long session with the window, as a user who works by keyboard and screen
// reader has one, ended by closing the window and started again, many times:
// Tab around the whole window, typing into fields and choosing types, the
// window resized from its minimum to a full 1920x1080 screen and back, set
// all with a controller and without, both file dialogs opened and cancelled,
// an import shown, the accessibility tree walked, the status line changing
// while its announcement is still due when the window closes. Each close must
// end cleanly and keep exactly what the panels showed.
#include <QAccessible>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "sim_scene.h"
#include "ui/press/set_all_run.h"
#include "ui/status/window_status.h"
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

namespace {

QSettings store()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"));
}

// Every object a screen reader can reach, asked for its name, role, state and
// description, as a reader walking the tree does.
int walk(QAccessibleInterface* iface)
{
    if (!iface || !iface->isValid())
        return 0;
    int seen = 1;
    (void)iface->text(QAccessible::Name);
    (void)iface->text(QAccessible::Description);
    (void)iface->role();
    (void)iface->state();
    (void)iface->rect();
    for (int i = 0; i < iface->childCount(); ++i)
        seen += walk(iface->child(i));
    return seen;
}

}  // namespace

class LongSessionTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        store().clear();
        QVERIFY(dir.isValid());
        sim = std::make_unique<SimMidiHost>();
        set_midi_host(sim.get());
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void manySessionsEachEndedByClosing()
    {
        write_test_file(dir.filePath(QStringLiteral("import.txt")), "Note Off\n3\n33\nBend Change\n4\n44\n");
        PluggedController controller{};
        for (int session = 0; session < 6; ++session) {
            // Every other session has a controller, so set all sends in some
            // and warns in the others.
            if (session % 2 == 0)
                controller = plug_controller(*sim, "4AC1CC27");
            else if (session > 0)
                unplug_controller(*sim, controller);
            QVERIFY(harness.open());
            ConsoleCapture quiet;

            resizeThrough();
            tabAround(session);
            QVERIFY(walk(QAccessible::queryAccessibleInterface(harness.window())) > 100);
            setAll();
            dialogsOpenedAndCancelled();
            if (session % 3 == 1)
                importAndShow();
            // A run of status changes leaves an announcement due at the close.
            WindowStatus* status = WindowStatus::of(*harness.state());
            status->setMessage(QStringLiteral("a"));
            status->setWarningMessage(QStringLiteral("b"));
            status->setMessage(QStringLiteral("c"));

            const QString channel = QString::number(session + 1);
            harness.replaceText(harness.item(QStringLiteral("channelField"), harness.panelShowingRecord(9)), channel);
            harness.close();
            QTRY_VERIFY(!harness.window()->isVisible());
            harness.destroy();
            quiet.finish();

            // What the panels showed was kept.
            const QByteArray stored = store().value(QStringLiteral("configurationKey")).toByteArray();
            const QJsonArray settings =
                QJsonDocument::fromJson(stored).object().value(QStringLiteral("settings")).toArray();
            QCOMPARE(settings.at(3 * 9 + 1).toString(), channel);
        }
    }

private:
    void resizeThrough()
    {
        QQuickWindow* window = harness.window();
        const QList<QSize> sizes{{window->minimumWidth(), window->minimumHeight()},
                                 {1920, 1080},
                                 {800, 600},
                                 {1366, 500},
                                 {window->width(), window->height()}};
        for (const QSize& size : sizes) {
            window->resize(size);
            QTRY_COMPARE(window->size(), size);
            QCoreApplication::processEvents();
        }
    }

    void tabAround(int session)
    {
        QQuickWindow* window = harness.window();
        for (int i = 0; i < 140; ++i) {
            QTest::keyClick(window, Qt::Key_Tab);
            QQuickItem* focused = window->activeFocusItem();
            if (!focused)
                continue;
            const QString name = focused->objectName();
            if (name == QLatin1String("typeMenu") && i % 3 == session % 3)
                QTest::keyClick(window, Qt::Key_Down);
            else if (name == QLatin1String("controllerField") && i % 5 == 0)
                typeKeys(window, QString::number(10 + i % 100));
            else if (name == QLatin1String("textAreaFrame"))
                QTest::keyClick(window, Qt::Key_End);
        }
        for (int i = 0; i < 20; ++i)
            QTest::keyClick(window, Qt::Key_Backtab);
    }

    void setAll()
    {
        SetAllRun* run = WindowStatus::of(*harness.state())->setAll();
        harness.click(harness.item(QStringLiteral("setAllButton")));
        QTRY_VERIFY_WITH_TIMEOUT(!run->running(), 10000);
    }

    void dialogsOpenedAndCancelled()
    {
        harness.click(harness.item(QStringLiteral("importButton")));
        QVERIFY(harness.cancelFileDialog(harness.openDialog()));
        harness.click(harness.item(QStringLiteral("exportButton")));
        QVERIFY(harness.cancelFileDialog(harness.saveDialog()));
    }

    void importAndShow()
    {
        harness.click(harness.item(QStringLiteral("importButton")));
        QVERIFY(harness.acceptFileDialog(harness.openDialog(), dir.path(), QStringLiteral("import.txt")));
        // Made with the offer, once the import is read.
        QQuickItem* show = nullptr;
        QTRY_VERIFY((show = harness.item(QStringLiteral("showImportedButton"))) && show->isVisible());
        harness.click(show);
        QCOMPARE(harness.state()->record(1)->message_type_menu_string(), QStringLiteral("Bend Change"));
    }

    QTemporaryDir dir;
    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(LongSessionTest)
#include "long_session_test.moc"
