#include "midi/alsa/wake_poll.h"

#include <alsa/asoundlib.h>
#include <sys/eventfd.h>

#include <unistd.h>

#include <cerrno>
#include <cstdint>

MidiStatus open_wake_poll(snd_seq_t* seq, size_t max_seq_fds, int* wake_fd, std::vector<pollfd>* fds)
{
    *wake_fd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (*wake_fd < 0)
        return -errno;
    const int seq_fd_count = snd_seq_poll_descriptors_count(seq, POLLIN);
    if (seq_fd_count <= 0 || static_cast<size_t>(seq_fd_count) > max_seq_fds)
        return seq_fd_count < 0 ? seq_fd_count : -EINVAL;
    fds->resize(static_cast<size_t>(seq_fd_count) + 1);
    (*fds)[0] = pollfd{*wake_fd, POLLIN, 0};
    const int filled = snd_seq_poll_descriptors(seq, fds->data() + 1, static_cast<unsigned int>(seq_fd_count), POLLIN);
    if (filled != seq_fd_count)
        return filled < 0 ? filled : -EINVAL;
    return 0;
}

void stop_poll_thread(std::thread* thread, int wake_fd)
{
    if (!thread->joinable())
        return;
    // Adding 1 to an eventfd counter fails only on overflow, which cannot
    // happen here, so the thread always wakes and the join returns.
    const uint64_t one = 1;
    ssize_t written;
    do
        written = ::write(wake_fd, &one, sizeof one);
    while (written < 0 && errno == EINTR);
    thread->join();
}

void close_wake_fd(int* wake_fd)
{
    if (*wake_fd >= 0) {
        ::close(*wake_fd);
        *wake_fd = -1;
    }
}
