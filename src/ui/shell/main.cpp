// dialcraft: programs the knobs of the 4AC0CC27 to 4ACFCC27 USB-MIDI controllers.
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <memory>

#include "base/program_version.h"
#include "midi/alsa/alsa_midi_host.h"
#include "midi/host_selection.h"
#include "ui/shell/app_shell.h"

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

int main(int argc, char** argv)
{
    // Answered before Qt starts, so it needs no display.
    if (asks_version(argc, argv))
        return std::fputs(version_line("dialcraft").c_str(), stdout) < 0 ? 1 : 0;
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
