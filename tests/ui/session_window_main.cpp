// The real main window for a desktop session check: shown on the platform the
// environment names (xcb under Xvfb), with the simulated MIDI service standing
// in for one connected controller, 4AC1CC27, and a private settings folder.
// It runs until its window is closed or the process is ended.
// Usage: ui_session_window
#include <QSettings>

#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

int main(int argc, char** argv)
{
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    QSettings().clear();

    SimMidiHost sim;
    sim.add_device("4AC1CC27", "Maker", "4AC1CC27");
    sim.add_source("4AC1CC27 MIDI 1");
    sim.add_destination("4AC1CC27 MIDI 1");
    set_midi_host(&sim);

    WindowHarness harness;
    if (!harness.open())
        return 1;
    const int result = QCoreApplication::exec();
    harness.destroy();
    set_midi_host(nullptr);
    return result;
}
