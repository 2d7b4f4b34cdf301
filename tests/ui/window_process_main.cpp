// The real main window as a process of its own, for the tests that need
// several processes: offscreen, with the simulated MIDI service (no
// controller, so its lines are the same on every machine) and the same
// orderly end on signals as the program. Its settings and state folders
// come from XDG_CONFIG_HOME and XDG_DATA_HOME. Standard output carries only
// the window's own lines; commands come on standard input, one per line, and
// each is answered on standard error with one line "window-process: ...":
//   edit KNOB|TYPE|CHANNEL|CONTROLLER  sets the knob's panel as the user does
//   panel KNOB                         answers "panel KNOB: TYPE|CHANNEL|CONTROLLER"
//   status                             answers "status: <the status line's message>" (lines joined by " | ")
//   offer                              answers "offer: shown" or "offer: hidden"
//   press OBJECTNAME                   gives the button the focus and presses Space
//   journal                            writes the journal now; answers its path
//   session                            a long session: Tab around the window with keys typed,
//                                      resized from its minimum to 1920x1080 and back, the
//                                      accessibility tree walked, set all, both dialogs opened
//                                      and cancelled, status changes left to be announced;
//                                      answers "session done"
//   close                              closes the window as the user does; answers "closing"
// "ready" comes once the start-up hook has run.
// Usage: ui_window_process
#include <QAccessible>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "model/table_sync.h"
#include "ui/press/set_all_run.h"
#include "ui/shell/orderly_end.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

void answer(const QString& text)
{
    const QByteArray line = "window-process: " + text.toUtf8() + "\n";
    std::fputs(line.constData(), stderr);
    std::fflush(stderr);
}

QString panel_text(WindowHarness& harness, int knob)
{
    QQuickItem* panel = harness.panelShowingRecord(knob);
    return QStringLiteral("panel %1: %2|%3|%4")
        .arg(knob)
        .arg(harness.item(QStringLiteral("typeMenu"), panel)->property("displayText").toString(),
             harness.item(QStringLiteral("channelField"), panel)->property("text").toString(),
             harness.item(QStringLiteral("controllerField"), panel)->property("text").toString());
}

// Every object a screen reader can reach, asked what a reader asks.
int walk(QAccessibleInterface* iface)
{
    if (!iface || !iface->isValid())
        return 0;
    int seen = 1;
    (void)iface->text(QAccessible::Name);
    (void)iface->text(QAccessible::Description);
    (void)iface->state();
    (void)iface->rect();
    for (int i = 0; i < iface->childCount(); ++i)
        seen += walk(iface->child(i));
    return seen;
}

void long_session(WindowHarness& harness)
{
    QQuickWindow* window = harness.window();
    const QSize start = window->size();
    for (const QSize size :
         {QSize(window->minimumWidth(), window->minimumHeight()), QSize(1920, 1080), QSize(800, 600), start}) {
        window->resize(size);
        (void)QTest::qWaitFor([&] { return window->size() == size; });
    }
    for (int i = 0; i < 150; ++i) {
        QTest::keyClick(window, Qt::Key_Tab);
        const QQuickItem* focused = window->activeFocusItem();
        if (focused && focused->objectName() == QLatin1String("typeMenu") && i % 4 == 0)
            QTest::keyClick(window, Qt::Key_Down);
        else if (focused && focused->objectName() == QLatin1String("controllerField") && i % 3 == 0)
            QTest::keyClick(window, Qt::Key_7);
    }
    walk(QAccessible::queryAccessibleInterface(window));
    SetAllRun* run = WindowStatus::of(*harness.state())->setAll();
    harness.click(harness.item(QStringLiteral("setAllButton")));
    (void)QTest::qWaitFor([run] { return !run->running(); }, 10000);
    harness.click(harness.item(QStringLiteral("importButton")));
    harness.cancelFileDialog(harness.openDialog());
    harness.click(harness.item(QStringLiteral("exportButton")));
    harness.cancelFileDialog(harness.saveDialog());
    WindowStatus::of(*harness.state())->setMessage(QStringLiteral("a"));
    WindowStatus::of(*harness.state())->setWarningMessage(QStringLiteral("b"));
}

void run_command(WindowHarness& harness, const QString& line)
{
    const QString command = line.section(u' ', 0, 0);
    const QString rest = line.section(u' ', 1);
    if (command == QLatin1String("edit")) {
        const QStringList parts = rest.split(u'|');
        QQuickItem* panel = harness.panelShowingRecord(parts.value(0).toInt());
        if (parts.size() != 4 || !panel || !harness.choose(harness.item(QStringLiteral("typeMenu"), panel), parts[1])) {
            answer(QStringLiteral("cannot edit ") + rest);
            return;
        }
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), parts[2]);
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), parts[3]);
        answer(panel_text(harness, parts[0].toInt()));
    } else if (command == QLatin1String("panel")) {
        answer(panel_text(harness, rest.toInt()));
    } else if (command == QLatin1String("status")) {
        QString message = WindowStatus::of(*harness.state())->message();
        answer(QStringLiteral("status: ") + message.replace(u'\n', QStringLiteral(" | ")));
    } else if (command == QLatin1String("offer")) {
        const QQuickItem* offer = harness.item(QStringLiteral("restoreOffer"));
        answer(QStringLiteral("offer: ") + (offer && offer->isVisible() ? "shown" : "hidden"));
    } else if (command == QLatin1String("press")) {
        QQuickItem* button = harness.item(rest);
        if (!button || !button->isVisible()) {
            answer(QStringLiteral("no button ") + rest);
            return;
        }
        button->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(harness.window(), Qt::Key_Space);
        QCoreApplication::processEvents();
        answer(QStringLiteral("pressed ") + rest);
    } else if (command == QLatin1String("journal")) {
        TableSync* sync = TableSync::of(*harness.state());
        sync->writeJournalNow();
        answer(QStringLiteral("journal: ") + sync->journalPath());
    } else if (command == QLatin1String("session")) {
        long_session(harness);
        answer(QStringLiteral("session done"));
    } else if (command == QLatin1String("close")) {
        answer(QStringLiteral("closing"));
        harness.close();
    } else {
        answer(QStringLiteral("unknown command ") + line);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("DIALCRAFT_SEQ_DEVICE", "/dev/null");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication app(argc, argv);
    configure_application(app);
    install_orderly_end(app);

    SimMidiHost sim;
    set_midi_host(&sim);

    WindowHarness harness;
    if (!harness.open())
        return 1;
    answer(QStringLiteral("ready"));

    QByteArray pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char buffer[4096];
        const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (got <= 0) {
            input.setEnabled(false);
            return;
        }
        pending.append(buffer, got);
        qsizetype end;
        while ((end = pending.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(pending.left(end));
            pending.remove(0, end + 1);
            run_command(harness, line);
        }
    });
    const int result = QCoreApplication::exec();
    harness.destroy();
    set_midi_host(nullptr);
    return result;
}
