#pragma once
// What a thread that reads a sequencer handle waits on: an eventfd that
// wakes it to stop, first, then the handle's own poll descriptors. Shared by
// the input port's reader and the announce watcher.
#include <poll.h>

#include <cstddef>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "midi/midi_host.h"

typedef struct _snd_seq snd_seq_t;

// Opens the eventfd into `*wake_fd` and fills `*fds` with it and the
// descriptors of `seq` (at most `max_seq_fds` of them). Returns 0, or the
// negative errno or ALSA error; `*wake_fd` is set whenever the eventfd was
// opened, so the caller closes it in every case.
MidiStatus open_wake_poll(snd_seq_t* seq, size_t max_seq_fds, int* wake_fd, std::vector<pollfd>* fds);

// Starts `run` on `*thread`. Returns 0, or the negative errno when the system
// could not make the thread.
template <typename Run>
MidiStatus start_poll_thread(std::thread* thread, Run run)
{
    try {
        *thread = std::thread(std::move(run));
    } catch (const std::system_error& e) {
        return -e.code().value();
    }
    return 0;
}

// Wakes the thread through `wake_fd` and joins it, if it was started.
void stop_poll_thread(std::thread* thread, int wake_fd);

// Closes the eventfd if it is open and marks it closed.
void close_wake_fd(int* wake_fd);
