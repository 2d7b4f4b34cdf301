#include "midi/alsa/announce_watcher.h"
#include "midi/alsa/wake_poll.h"

#include <alsa/asoundlib.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

namespace {
// The announcements that change what the device lists or card names hold.
// Subscriptions are announced too, but they move nothing, and each probe of
// the link makes some, so the kernel is told to keep them from this client.
constexpr int layout_events[] = {
    SND_SEQ_EVENT_CLIENT_START, SND_SEQ_EVENT_CLIENT_EXIT, SND_SEQ_EVENT_CLIENT_CHANGE,
    SND_SEQ_EVENT_PORT_START,   SND_SEQ_EVENT_PORT_EXIT,   SND_SEQ_EVENT_PORT_CHANGE,
};

// alsa-lib gives a sequencer handle one descriptor; a few more are room.
constexpr size_t max_seq_fds = 4;

bool is_layout_event(int type)
{
    for (int t : layout_events)
        if (t == type)
            return true;
    return false;
}

// One line on stderr in one write. Never standard output: that belongs to
// the diagnostic lines of the link and the application.
void report_on_stderr(const char* what, int err)
{
    char line[256];
    const int n = std::snprintf(line, sizeof line,
                                "dialcraft: the ALSA announcement watcher stopped: %s failed: %s; "
                                "device lists are read afresh from now on\n",
                                what, err < 0 ? snd_strerror(err) : "unexpected state");
    if (n <= 0)
        return;
    const size_t length = static_cast<size_t>(n) < sizeof line ? static_cast<size_t>(n) : sizeof line - 1;
    ssize_t written;
    do
        written = ::write(STDERR_FILENO, line, length);
    while (written < 0 && errno == EINTR);
}
}  // namespace

struct AlsaAnnounceWatcher::State {
    snd_seq_t* seq = nullptr;
    int client = -1;
    int port = -1;
    // Written by the destructor to wake the thread out of poll().
    int wake_fd = -1;
    // wake_fd first, then the sequencer's descriptors.
    std::vector<pollfd> fds;
    // The sequencer's descriptors as they were before the thread started,
    // for other threads to poll: poll() writes revents into the thread's
    // own array while it waits, so no one else may read that one.
    std::array<pollfd, max_seq_fds> queue_fds{};
    size_t queue_fd_count = 0;

    std::atomic<uint64_t> changes{0};
    std::atomic<bool> reading{false};
    std::atomic<bool> running{true};

    std::mutex proc_mutex;
    MidiChangeProc proc = nullptr;
    void* proc_context = nullptr;

    std::thread thread;

    ~State() { shut_down(); }

    void shut_down();
    void run();
    // Reads every queued announcement; says whether one of them (or a loss)
    // counts as a change. Returns 0 or the error that ended the reading.
    int drain(bool* changed);
    void tell();
    void stop_on_error(const char* what, int err);
};

void AlsaAnnounceWatcher::State::shut_down()
{
    stop_poll_thread(&thread, wake_fd);
    if (seq) {
        if (int err = snd_seq_close(seq); err < 0)
            report_on_stderr("snd_seq_close", err);
        seq = nullptr;
    }
    close_wake_fd(&wake_fd);
}

void AlsaAnnounceWatcher::State::tell()
{
    std::lock_guard lock(proc_mutex);
    if (proc)
        proc(proc_context);
}

void AlsaAnnounceWatcher::State::stop_on_error(const char* what, int err)
{
    running = false;
    // Whatever was kept may be stale now; a moved count makes every keeper
    // read afresh, and running = false keeps them from keeping again.
    ++changes;
    reading = false;
    report_on_stderr(what, err);
    tell();
}

int AlsaAnnounceWatcher::State::drain(bool* changed)
{
    for (;;) {
        snd_seq_event_t* ev = nullptr;
        const int rc = snd_seq_event_input(seq, &ev);
        if (rc == -EAGAIN)
            return 0;
        if (rc == -ENOSPC) {
            // The kernel dropped announcements while the queue was full: any
            // of them may have been a change.
            *changed = true;
            continue;
        }
        if (rc < 0)
            return rc;
        if (ev && is_layout_event(ev->type))
            *changed = true;
    }
}

void AlsaAnnounceWatcher::State::run()
{
    const auto seq_fd_count = static_cast<unsigned int>(fds.size() - 1);
    for (;;) {
        for (pollfd& fd : fds)
            fd.revents = 0;
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            return stop_on_error("poll", -errno);
        }
        if (fds[0].revents != 0)
            return;  // asked to stop
        unsigned short revents = 0;
        if (int err = snd_seq_poll_descriptors_revents(seq, fds.data() + 1, seq_fd_count, &revents); err < 0)
            return stop_on_error("snd_seq_poll_descriptors_revents", err);
        if (revents & (POLLERR | POLLHUP | POLLNVAL))
            return stop_on_error("poll on the sequencer", -EIO);
        if (!(revents & POLLIN))
            continue;
        // Marked before the queue is read, so that from the moment the kernel
        // queue looks empty until the count has moved, readers know to wait.
        reading = true;
        bool changed = false;
        const int err = drain(&changed);
        if (changed)
            ++changes;
        reading = false;
        if (changed)
            tell();
        if (err < 0)
            return stop_on_error("snd_seq_event_input", err);
    }
}

MidiStatus AlsaAnnounceWatcher::open(std::unique_ptr<AlsaAnnounceWatcher>* out)
{
    if (!out)
        return -EINVAL;
    auto state = std::make_unique<State>();
    if (int err = snd_seq_open(&state->seq, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK); err < 0) {
        state->seq = nullptr;
        return err;
    }
    if (int err = snd_seq_set_client_name(state->seq, "MIDI Client changes"); err < 0)
        return err;
    for (int type : layout_events)
        if (int err = snd_seq_set_client_event_filter(state->seq, type); err < 0)
            return err;
    state->client = snd_seq_client_id(state->seq);
    if (state->client < 0)
        return state->client;
    // Writable only for its own subscription, and hidden from other programs.
    state->port = snd_seq_create_simple_port(state->seq, "Announcements",
                                             SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
                                             SND_SEQ_PORT_TYPE_APPLICATION);
    if (state->port < 0)
        return state->port;
    if (int err = snd_seq_connect_from(state->seq, state->port, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE);
        err < 0)
        return err;

    if (MidiStatus err = open_wake_poll(state->seq, max_seq_fds, &state->wake_fd, &state->fds); err != 0)
        return err;
    state->queue_fd_count = state->fds.size() - 1;
    std::copy(state->fds.begin() + 1, state->fds.end(), state->queue_fds.begin());

    if (MidiStatus err = start_poll_thread(&state->thread, [s = state.get()] { s->run(); }); err != 0)
        return err;
    out->reset(new AlsaAnnounceWatcher(std::move(state)));
    return 0;
}

AlsaAnnounceWatcher::AlsaAnnounceWatcher(std::unique_ptr<State> state) : state_(std::move(state)) {}

AlsaAnnounceWatcher::~AlsaAnnounceWatcher() = default;

int AlsaAnnounceWatcher::client_id() const
{
    return state_->client;
}

bool AlsaAnnounceWatcher::alive() const
{
    return state_->running;
}

uint64_t AlsaAnnounceWatcher::change_count() const
{
    return state_->changes;
}

bool AlsaAnnounceWatcher::unchanged_since(uint64_t count, bool check_queue) const
{
    const auto quiet = [&] { return state_->running && !state_->reading && state_->changes == count; };
    if (!quiet())
        return false;
    if (!check_queue)
        return true;
    // The sequencer's descriptors only, from the copy taken before the
    // thread started, polled without waiting: readable means announcements
    // are queued that the thread has not read yet.
    std::array<pollfd, max_seq_fds> queue = state_->queue_fds;
    const size_t n = state_->queue_fd_count;
    int ready;
    do
        ready = poll(queue.data(), n, 0);
    while (ready < 0 && errno == EINTR);
    // Queued, or poll failed: either way not known to be unchanged. If the
    // thread read the queue meanwhile, it marked itself reading first.
    return ready == 0 && quiet();
}

void AlsaAnnounceWatcher::set_change_proc(MidiChangeProc proc, void* context)
{
    std::lock_guard lock(state_->proc_mutex);
    state_->proc = proc;
    state_->proc_context = context;
}
