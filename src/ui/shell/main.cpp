// dialcraft: programs the knobs of the 4AC0CC27 to 4ACFCC27 USB-MIDI controllers.
#include <QtQml/qqmlextensionplugin.h>

#include <memory>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/host_selection.h"
#include "ui/shell/app_shell.h"

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

int main(int argc, char** argv)
{
    // The window talks to the ALSA sequencer. The host outlives the
    // application, whose shut-down hook still closes the link's client.
    const std::unique_ptr<MidiHost> alsa = make_alsa_midi_host();
    set_midi_host(alsa.get());
    int status = 0;
    {
        dialcraftApp app;
        status = app.run(argc, argv);
    }
    set_midi_host(nullptr);
    return status;
}
