// The real main window for a desktop session check: shown on the platform the
// environment names (xcb under Xvfb), with the simulated MIDI service standing
// in for one connected controller, 4AC1CC27, and a private settings folder.
// It runs until its window is closed or the process is ended.
// Usage: ui_session_window
#include <QSettings>

#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "sim_scene.h"
#include "window_harness.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
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
    const int result = QCoreApplication::exec();
    harness.destroy();
    set_midi_host(nullptr);
    return result;
}
