// Renders the real main window offscreen with the monitor open after knob 5
// was set and then turned: the monitor's lines, the lit panel with its value
// and 已验证(verified), the status line's verification.
// Usage: ui_monitor_screenshot <monitor.png>
#include <QImage>
#include <QSettings>
#include <QTest>

#include <cstdio>

#include "midi/host_selection.h"
#include "sim_scene.h"
#include "ui/monitor/knob_monitor.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <monitor.png>\n", argv[0]);
        return 2;
    }
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    QSettings().clear();

    SimMidiHost sim;
    set_midi_host(&sim);
    const PluggedController controller = plug_controller(sim, "4AC1CC27");
    WindowHarness harness;
    if (!harness.open())
        return 1;
    GlobalState& state = *harness.state();
    state.set_machine_type_menu_string(QStringLiteral("4AC1CC27"));
    configure_knob(state, 3, "Note On", "1", "60");
    configure_knob(state, 5, "Control Change", "2", "74");
    KnobMonitor* monitor = WindowStatus::of(state)->monitor();
    if (!QTest::qWaitFor([monitor] { return monitor->listening(); }, 5000))
        return 1;
    harness.click(harness.item(QStringLiteral("monitorToggle")));
    harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));
    for (uint8_t value : {0x30, 0x38, 0x40, 0x48})
        sim.inject(controller.source, {0xB1, 0x4A, value});
    sim.inject(controller.source, {0x90, 0x3C, 0x64});
    sim.inject(controller.source, {0xB0, 0x01, 0x10});
    QTest::qWait(200);
    const bool saved = save_picture(harness.grab(), argv[1]);
    harness.destroy();
    set_midi_host(nullptr);
    return saved ? 0 : 1;
}
