#pragma once
// A sequencer client of our own read by one thread of its own: the input
// port's client and the announce watcher's, and any later reader (such as a
// monitor of every controller's source) are one of these. The reader owns
// the client's handle, the eventfd that wakes its thread to stop, the poll
// and drain loop and what happens when the kernel drops events or reading
// fails. Only the thread touches the handle once it runs.
//
// A thread that stops on an error says so once, in one line on standard
// error (never standard output, which carries the link's and the
// application's diagnostic lines), and tells its sink.
#include <poll.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <thread>

#include "midi/alsa/sequencer_client.h"
#include "midi/midi_host.h"

typedef struct snd_seq_event snd_seq_event_t;

namespace dialcraft {

// What a reader's thread tells its user, on that thread.
class AlsaEventSink {
public:
    virtual ~AlsaEventSink() = default;
    // The queue has events and is about to be read until it is empty.
    virtual void reading_begins() {}
    // One event from the queue; it is valid only during the call.
    virtual void event(const snd_seq_event_t& ev) = 0;
    // The kernel dropped events because the queue was full; which ones is
    // not known. Reading goes on with those still queued.
    virtual void events_lost() {}
    // The queue was read empty, or reading it failed (stopped() follows).
    virtual void reading_ends() {}
    // The thread has stopped on an error and said why on standard error;
    // no further call follows.
    virtual void stopped() {}
};

// The eventfd that wakes a reader's thread out of poll() to stop it.
class AlsaWakeFd {
public:
    AlsaWakeFd() = default;
    ~AlsaWakeFd();
    AlsaWakeFd(const AlsaWakeFd&) = delete;
    AlsaWakeFd& operator=(const AlsaWakeFd&) = delete;

    // Returns 0 or the negative errno.
    MidiStatus open();
    int fd() const { return fd_; }
    // Makes the descriptor readable; it stays so.
    void wake() const;

private:
    int fd_ = -1;
};

class AlsaSequencerReader {
public:
    // alsa-lib gives a sequencer handle one descriptor; a few more are room.
    static constexpr size_t max_seq_fds = 4;

    // `role` names the reader in its stop report ("input port reader"), and
    // `consequence` says what no longer works once it has stopped.
    AlsaSequencerReader(const char* role, const char* consequence);
    // Stops the thread and closes the client; a failed close is reported.
    ~AlsaSequencerReader();
    AlsaSequencerReader(const AlsaSequencerReader&) = delete;
    AlsaSequencerReader& operator=(const AlsaSequencerReader&) = delete;

    // Opens the input client `name`. Returns 0 or the negative ALSA error.
    MidiStatus open(const char* name);
    // The client's handle, for ports, filters and subscriptions made before
    // start(); afterwards only the thread uses it. Null until opened.
    snd_seq_t* handle() const { return seq_; }
    int client_id() const { return client_; }

    // Starts the thread that reads the client into `sink`, which must outlive
    // it. Returns 0 or the negative ALSA error or errno.
    MidiStatus start(AlsaEventSink* sink);

    // False once the thread has stopped on an error.
    bool alive() const { return running_; }
    // Whether the client's queue is known to hold nothing the thread has not
    // read yet: one poll() that does not wait, on any thread. A failed poll
    // counts as not known.
    bool queue_known_empty() const;

    // Wakes and joins the thread, if it runs; the client stays open. For a
    // sink that goes away before its reader.
    void stop_thread();
    // Wakes and joins the thread, then closes the client. Returns the close
    // status; when nothing is open, -EBADF.
    MidiStatus close();

private:
    void run();
    // Reads every queued event; returns 0 once the queue is empty, or the
    // error that ended the reading.
    int drain();
    void stop_on_error(const char* what, int err);

    const char* role_;
    const char* consequence_;
    snd_seq_t* seq_ = nullptr;
    int client_ = -1;
    AlsaWakeFd wake_;
    // The wake descriptor first, then the sequencer's; only the thread may
    // read them once it runs, as poll() writes into them while it waits.
    std::array<pollfd, 1 + max_seq_fds> fds_{};
    size_t fd_count_ = 0;
    // The sequencer's descriptors as they were before the thread started,
    // for other threads to poll.
    std::array<pollfd, max_seq_fds> queue_fds_{};
    AlsaEventSink* sink_ = nullptr;
    std::atomic<bool> running_{false};
    std::thread thread_;
};

}  // namespace dialcraft
