// The window's end in every order: closed first, destroyed without a close
// event or later from the event loop, the engine torn down first, hidden
// first. Each runs the shut-down hook exactly once and stores the table.
// Under the sanitizer builds (scripts/sanitize) these also check that no
// order touches a half destroyed window.
#include <QSettings>
#include <QTest>

#include <memory>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

QSettings store()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"));
}

QStringList shut_down_lines()
{
    QStringList lines{QStringLiteral("midi_exit\r")};
    for (int i = 0; i <= 26; ++i)
        lines << QStringLiteral("Accessing configuration.settings at index: %1").arg(i);
    return lines;
}

// The start of the stored JSON when knob 0's channel holds `channel`.
QByteArray stored_start(const QString& channel)
{
    return "{\"settings\":[\"" + QStringLiteral("选择消息类型").toUtf8() + "\",\"" + channel.toUtf8() + "\",\"127\",";
}

}  // namespace

class TeardownTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        store().clear();
        sim = std::make_unique<SimMidiHost>();
        set_midi_host(sim.get());
        QVERIFY(harness.open());
        harness.replaceText(harness.item(QStringLiteral("channelField"), harness.panelShowingRecord(0)),
                            QStringLiteral("9"));
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void closeFirstThenEngine()
    {
        ConsoleCapture capture;
        harness.window()->close();
        QCoreApplication::processEvents();
        harness.destroy();
        QCOMPARE(capture.finishLines(), shut_down_lines());
        QVERIFY(store().value(QStringLiteral("configurationKey")).toByteArray().startsWith(stored_start("9")));
    }

    void windowDestroyedWithoutCloseEvent()
    {
        ConsoleCapture capture;
        delete harness.window();  // the engine lives on without its window
        QCoreApplication::processEvents();
        const QStringList lines = capture.finishLines();
        harness.destroy();
        QCOMPARE(lines, shut_down_lines());
        QVERIFY(store().value(QStringLiteral("configurationKey")).toByteArray().startsWith(stored_start("9")));
    }

    void windowDeletedLater()
    {
        ConsoleCapture capture;
        harness.window()->deleteLater();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        const QStringList lines = capture.finishLines();
        harness.destroy();
        QCOMPARE(lines, shut_down_lines());
    }

    void engineTornDownFirst()
    {
        ConsoleCapture capture;
        harness.destroy();
        QCOMPARE(capture.finishLines(), shut_down_lines());
        QVERIFY(store().value(QStringLiteral("configurationKey")).toByteArray().startsWith(stored_start("9")));
    }

    void hiddenThenDestroyed()
    {
        harness.window()->hide();
        QCoreApplication::processEvents();
        ConsoleCapture capture;
        harness.destroy();
        QCOMPARE(capture.finishLines(), shut_down_lines());
    }

private:
    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(TeardownTest)
#include "teardown_test.moc"
