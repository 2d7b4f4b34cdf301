#pragma once
// The listening half of the ALSA host: a sequencer client of its own with one
// hidden port, subscribed to the System Announce port and to every readable
// port whose name the listener wants. Its thread, the only user of the handle
// once it runs, subscribes to ports as they start or are renamed and turns
// their events into messages for the listener. The link's clients and their
// connections are never touched.
#include <memory>

#include "midi/midi_host.h"

namespace dialcraft {

class AlsaSourceListener {
public:
    // Opens the client, subscribes it to every wanted port there is now and
    // starts the thread; `listener` must outlive this. Returns 0 or the
    // negative ALSA (or errno) error; `out` is only set on success.
    static MidiStatus open(MidiListener* listener, std::unique_ptr<AlsaSourceListener>* out);
    // Wakes and joins the thread, then closes the client.
    ~AlsaSourceListener();
    AlsaSourceListener(const AlsaSourceListener&) = delete;
    AlsaSourceListener& operator=(const AlsaSourceListener&) = delete;

    // The listener's own sequencer client, which no device list shows.
    int client_id() const;

    struct State;

private:
    explicit AlsaSourceListener(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace dialcraft
