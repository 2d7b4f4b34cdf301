#include "midi/alsa/sequencer_reader.h"

#include <alsa/asoundlib.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace dialcraft {

namespace {
// One line on standard error in one write, so that it never tears another
// thread's line.
void report_on_stderr(const char* role, const char* what, int err, const char* consequence)
{
    char line[256];
    const int n = std::snprintf(line, sizeof line, "dialcraft: the ALSA %s stopped: %s failed: %s; %s\n", role, what,
                                err < 0 ? snd_strerror(err) : "unexpected state", consequence);
    if (n <= 0)
        return;
    const size_t length = static_cast<size_t>(n) < sizeof line ? static_cast<size_t>(n) : sizeof line - 1;
    ssize_t written;
    do
        written = ::write(STDERR_FILENO, line, length);
    while (written < 0 && errno == EINTR);
}
}  // namespace

AlsaWakeFd::~AlsaWakeFd()
{
    if (fd_ >= 0)
        ::close(fd_);
}

MidiStatus AlsaWakeFd::open()
{
    fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return fd_ < 0 ? -errno : 0;
}

void AlsaWakeFd::wake() const
{
    // Adding 1 to an eventfd counter fails only on overflow, which cannot
    // happen here, so the thread always wakes.
    const uint64_t one = 1;
    ssize_t written;
    do
        written = ::write(fd_, &one, sizeof one);
    while (written < 0 && errno == EINTR);
}

AlsaSequencerReader::AlsaSequencerReader(const char* role, const char* consequence)
    : role_(role), consequence_(consequence)
{
}

AlsaSequencerReader::~AlsaSequencerReader()
{
    if (!seq_)
        return;
    if (MidiStatus err = close(); err < 0)
        report_on_stderr(role_, "snd_seq_close", err, consequence_);
}

MidiStatus AlsaSequencerReader::open(const char* name)
{
    if (seq_)
        return -EBUSY;
    return open_sequencer_client(name, AlsaClientDirection::input, &seq_, &client_);
}

MidiStatus AlsaSequencerReader::start(AlsaEventSink* sink)
{
    if (!seq_ || !sink || thread_.joinable())
        return -EINVAL;
    if (MidiStatus err = wake_.open(); err != 0)
        return err;
    const int seq_fd_count = snd_seq_poll_descriptors_count(seq_, POLLIN);
    if (seq_fd_count <= 0 || static_cast<size_t>(seq_fd_count) > max_seq_fds)
        return seq_fd_count < 0 ? seq_fd_count : -EINVAL;
    fds_[0] = pollfd{wake_.fd(), POLLIN, 0};
    const int filled = snd_seq_poll_descriptors(seq_, fds_.data() + 1, static_cast<unsigned int>(seq_fd_count), POLLIN);
    if (filled != seq_fd_count)
        return filled < 0 ? filled : -EINVAL;
    fd_count_ = static_cast<size_t>(seq_fd_count) + 1;
    std::copy(fds_.begin() + 1, fds_.begin() + static_cast<std::ptrdiff_t>(fd_count_), queue_fds_.begin());

    sink_ = sink;
    running_ = true;
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& e) {
        running_ = false;
        return -e.code().value();
    }
    return 0;
}

void AlsaSequencerReader::run()
{
    const auto seq_fd_count = static_cast<unsigned int>(fd_count_ - 1);
    for (;;) {
        for (size_t i = 0; i < fd_count_; ++i)
            fds_[i].revents = 0;
        if (poll(fds_.data(), fd_count_, -1) < 0) {
            if (errno == EINTR)
                continue;
            return stop_on_error("poll", -errno);
        }
        if (fds_[0].revents != 0)
            return;  // asked to stop
        unsigned short revents = 0;
        if (int err = snd_seq_poll_descriptors_revents(seq_, fds_.data() + 1, seq_fd_count, &revents); err < 0)
            return stop_on_error("snd_seq_poll_descriptors_revents", err);
        if (revents & (POLLERR | POLLHUP | POLLNVAL))
            return stop_on_error("poll on the sequencer", -EIO);
        if (!(revents & POLLIN))
            continue;
        sink_->reading_begins();
        const int err = drain();
        sink_->reading_ends();
        if (err < 0)
            return stop_on_error("snd_seq_event_input", err);
    }
}

int AlsaSequencerReader::drain()
{
    for (;;) {
        snd_seq_event_t* ev = nullptr;
        const int rc = snd_seq_event_input(seq_, &ev);
        if (rc == -EAGAIN)
            return 0;
        if (rc == -ENOSPC) {
            // The kernel dropped events while the queue was full. Those still
            // queued are worth reading, so the reading goes on.
            sink_->events_lost();
            continue;
        }
        if (rc < 0)
            return rc;
        if (ev)
            sink_->event(*ev);
    }
}

void AlsaSequencerReader::stop_on_error(const char* what, int err)
{
    running_ = false;
    report_on_stderr(role_, what, err, consequence_);
    sink_->stopped();
}

bool AlsaSequencerReader::queue_known_empty() const
{
    if (fd_count_ == 0)
        return false;
    // The copy taken before the thread started, polled without waiting:
    // readable means events are queued that the thread has not read yet.
    std::array<pollfd, max_seq_fds> queue = queue_fds_;
    int ready;
    do
        ready = poll(queue.data(), fd_count_ - 1, 0);
    while (ready < 0 && errno == EINTR);
    return ready == 0;
}

void AlsaSequencerReader::stop_thread()
{
    if (thread_.joinable()) {
        wake_.wake();
        thread_.join();
    }
}

MidiStatus AlsaSequencerReader::close()
{
    stop_thread();
    if (!seq_)
        return -EBADF;
    const int status = snd_seq_close(seq_);
    seq_ = nullptr;
    return status;
}

}  // namespace dialcraft
