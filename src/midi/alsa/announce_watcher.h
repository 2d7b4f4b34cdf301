#pragma once
// The one listener on the sequencer's System Announce port (0:1). A client
// of its own, read by a thread of its own, counts every start, exit or change
// of a client or port, and every time the kernel dropped announcements
// because the queue was full. The host keeps its device lists and card names
// only as long as that count stands still, and the window's presence line
// is told "look again" through the host's change watches. Only the thread touches
// the client's handle once it runs; other threads read the count and poll
// the handle's descriptors, which reads nothing from them.
#include <cstdint>
#include <memory>

#include "midi/midi_host.h"

namespace dialcraft {

class AlsaAnnounceWatcher {
public:
    // Opens the client, subscribes it to the announce port and starts the
    // thread, which tells `told` after every counted change and once more if
    // it stops; `told` must outlive the watcher. Returns 0 or the negative
    // ALSA (or errno) error; `out` is only set on success.
    static MidiStatus open(MidiChangeSubscribers* told, std::unique_ptr<AlsaAnnounceWatcher>* out);
    // Wakes and joins the thread, then closes the client.
    ~AlsaAnnounceWatcher();
    AlsaAnnounceWatcher(const AlsaAnnounceWatcher&) = delete;
    AlsaAnnounceWatcher& operator=(const AlsaAnnounceWatcher&) = delete;

    // The watcher's own sequencer client, which no device list shows.
    int client_id() const;

    // False once the thread has stopped on an error (said on stderr); from
    // then on nothing may be kept.
    bool alive() const;

    // How many changes have been counted so far; taken before reading
    // something from the sequencer, it stamps what was read.
    uint64_t change_count() const;
    // Whether what was read under the stamp `count` is still true: the
    // thread runs, has counted nothing since, is not reading announcements
    // right now and, with `check_queue` (one poll() call), has none waiting
    // in its queue either. Without the queue check an announcement is seen
    // only once the thread has woken for it.
    bool unchanged_since(uint64_t count, bool check_queue) const;

    struct State;

private:
    explicit AlsaAnnounceWatcher(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace dialcraft
