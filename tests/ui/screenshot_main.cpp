// Renders the real main window offscreen and saves pictures of it: one right
// after start-up and, when a second path is given, one after knob 5 has been
// set to Control Change, channel 2, controller 74 through its panel. The
// simulated MIDI service stands in for one connected controller, 4AC1CC27.
// Usage: ui_screenshot <start-up.png> [<after-set.png>]
#include <QImage>
#include <QSettings>
#include <QTest>

#include <cstdio>

#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "sim_scene.h"
#include "window_harness.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <start-up.png> [<after-set.png>]\n", argv[0]);
        return 2;
    }
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    QSettings().clear();

    SimMidiHost sim;
    plug_controller(sim, "4AC1CC27");
    set_midi_host(&sim);

    WindowHarness harness;
    if (!harness.open())
        return 1;
    // The offscreen pointer starts at the window's corner, over the import
    // button, which would then be drawn hovered; move it to an empty spot.
    QWindow* window = harness.window();
    QTest::mouseMove(window, QPoint(window->width() - 2, window->height() - 2));
    QTest::qWait(100);
    if (!save_picture(harness.grab(), argv[1]))
        return 1;
    if (argc < 3)
        return 0;

    QQuickItem* panel = harness.panelShowingRecord(5);
    harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Control Change"));
    harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("2"));
    harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), QStringLiteral("74"));
    harness.click(harness.item(QStringLiteral("setButton"), panel));
    QTest::qWait(100);
    const bool saved = save_picture(harness.grab(), argv[2]);
    harness.destroy();
    set_midi_host(nullptr);
    return saved ? 0 : 1;
}
