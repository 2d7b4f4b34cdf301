// Renders the real main window offscreen and saves three pictures of its
// status line: with no controller connected after knob 5 was set, during a
// set-all run with 4AC1CC27 connected, and after that run (one of its knobs
// has channel 0 and fails its check); and, given a fourth file, the ledger's
// marks after knob 2 was edited since that run; given a fifth and a sixth,
// the warning of a press that sent nothing and the offer to show the values
// of an import.
// Usage: ui_status_screenshot <no-controller.png> <set-all-running.png> <set-all-done.png> [<ledger-markers.png>
//        [<warning.png> <import-offer.png>]]
#include <QImage>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include "midi/host_selection.h"
#include "sim_scene.h"
#include "ui/press/set_all_run.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s <no-controller.png> <set-all-running.png> <set-all-done.png>\n", argv[0]);
        return 2;
    }
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    QSettings().clear();

    SimMidiHost sim;
    set_midi_host(&sim);
    WindowHarness harness;
    if (!harness.open())
        return 1;
    QQuickItem* panel = harness.panelShowingRecord(5);
    harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Control Change"));
    harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("2"));
    harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), QStringLiteral("74"));
    harness.click(harness.item(QStringLiteral("setButton"), panel));
    QTest::qWait(100);
    const QImage nothingSent = harness.grab();
    if (!save_picture(nothingSent, argv[1]) || (argc > 5 && !save_picture(nothingSent, argv[5])))
        return 1;

    plug_controller(sim, "4AC1CC27");
    GlobalState& state = *harness.state();
    configure_knob(state, 0, "Note On", "1", "60");
    configure_knob(state, 1, "Note On", "1", "62");
    configure_knob(state, 2, "Control Change", "2", "74");
    configure_knob(state, 6, "Bend Change", "16", "0");
    configure_knob(state, 9, "Note Off", "0", "64");
    configure_knob(state, 12, "Control Change", "3", "7");
    QTest::qWait(600);  // the status line has seen the controller
    SetAllRun* run = WindowStatus::of(state)->setAll();
    QImage running;
    QObject::connect(run, &SetAllRun::progressChanged, [&] {
        if (run->done() == 3 && running.isNull())
            running = harness.grab();
    });
    harness.click(harness.item(QStringLiteral("setAllButton")));
    if (!QTest::qWaitFor([run] { return !run->running(); }, 10000))
        return 1;
    QTest::qWait(100);
    bool saved = save_picture(running, argv[2]) && save_picture(harness.grab(), argv[3]);
    if (saved && argc > 4) {
        harness.replaceText(harness.item(QStringLiteral("controllerField"), harness.panelShowingRecord(2)),
                            QStringLiteral("75"));
        QTest::qWait(100);
        saved = save_picture(harness.grab(), argv[4]);
    }
    if (saved && argc > 6) {
        QTemporaryDir dir;
        write_test_file(dir.filePath(QStringLiteral("gig.txt")), "Note On\n1\n60\n\nBend Change\n16\n0\n");
        harness.click(harness.item(QStringLiteral("importButton")));
        saved = harness.acceptFileDialog(harness.openDialog(), dir.path(), QStringLiteral("gig.txt")) &&
                QTest::qWaitFor([&] {
                    const QQuickItem* show = harness.item(QStringLiteral("showImportedButton"));
                    return show && show->isVisible();
                });
        QTest::qWait(100);
        saved = saved && save_picture(harness.grab(), argv[6]);
    }
    harness.destroy();
    set_midi_host(nullptr);
    return saved ? 0 : 1;
}
