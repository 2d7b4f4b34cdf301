#pragma once
// The receiving half of the ALSA host: a sequencer client of its own holding
// one writable port, and the one thread that reads that client. Events are
// turned back into MIDI bytes and handed to the read callback, one packet per
// event. Only the thread touches the client's handle once it runs.
#include <memory>

#include "midi/midi_host.h"

namespace dialcraft {

class AlsaInputPort {
public:
    // Opens the client and its port and starts the reading thread. Returns 0
    // or the negative ALSA (or errno) error; `out` is only set on success.
    static MidiStatus open(const char* client_name, const char* port_name, MidiReadProc proc, void* proc_ref,
                           std::unique_ptr<AlsaInputPort>* out);
    // Stops the thread and closes the client if close() has not done so.
    ~AlsaInputPort();
    AlsaInputPort(const AlsaInputPort&) = delete;
    AlsaInputPort& operator=(const AlsaInputPort&) = delete;

    int client_id() const;
    int port_id() const;

    // The connection reference handed to the callback with events from the
    // port client:port; safe while the thread runs.
    void set_source_ref(int client, int port, void* ref);
    void forget_source_ref(int client, int port);

    // Wakes and joins the thread, then closes the client. Returns the close
    // status; a second call returns a non-zero status.
    MidiStatus close();

    struct State;

private:
    explicit AlsaInputPort(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace dialcraft
