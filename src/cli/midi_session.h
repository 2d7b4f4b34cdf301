#pragma once
// The MIDI side of one command: the link talks to the given service, its
// client is open for the command's duration, and the controller a
// programming command goes to is settled before anything is sent.
#include <string>

namespace dialcraft {

class MidiHost;
struct CliContext;

class MidiSession {
public:
    // Selects `host` for the link and opens the link's client (midi_init).
    explicit MidiSession(MidiHost& host);
    // Closes the client (midi_exit) and selects the link's previous host again.
    ~MidiSession();
    MidiSession(const MidiSession&) = delete;
    MidiSession& operator=(const MidiSession&) = delete;

    // Whether the MIDI service could be opened.
    bool opened() const { return opened_; }

private:
    MidiHost* previous_;
    bool opened_;
};

// The serial to put in the model menu for a set or apply: the --serial one,
// which must be present, or the only controller present. Returns 0 with
// `menu_serial` set, or the exit status after writing why to the error
// stream (no service or no controller: 3; several controllers and no
// --serial: 2).
int choose_menu_serial(const CliContext& context, MidiSession& session, std::string* menu_serial);

// When the MIDI service could not be opened: one line saying why, the
// sequencer's device named when it is missing (exit 4), else that the
// service could not be opened (exit 3). Returns that exit status.
int report_unopened_service(const CliContext& context);

}  // namespace dialcraft
