#include "controller_emulator/rawmidi_port.h"

#include <alsa/asoundlib.h>

namespace dialcraft {

RawMidiPort::~RawMidiPort()
{
    if (in_)
        snd_rawmidi_close(in_);
    if (out_)
        snd_rawmidi_close(out_);
}

bool RawMidiPort::open(const std::string& device)
{
    int err = snd_rawmidi_open(&in_, &out_, device.c_str(), SND_RAWMIDI_NONBLOCK);
    if (err < 0) {
        in_ = out_ = nullptr;
        error_ = "cannot open " + device + ": " + snd_strerror(err);
        return false;
    }
    return true;
}

std::vector<pollfd> RawMidiPort::poll_descriptors()
{
    int count = snd_rawmidi_poll_descriptors_count(in_);
    if (count <= 0)
        return {};
    std::vector<pollfd> fds(static_cast<size_t>(count));
    int filled = snd_rawmidi_poll_descriptors(in_, fds.data(), static_cast<unsigned>(count));
    if (filled < 0) {
        error_ = std::string("poll descriptors: ") + snd_strerror(filled);
        return {};
    }
    fds.resize(static_cast<size_t>(filled));
    return fds;
}

bool RawMidiPort::readable(std::span<pollfd> fds, bool& broken)
{
    unsigned short revents = 0;
    int err = snd_rawmidi_poll_descriptors_revents(in_, fds.data(), static_cast<unsigned>(fds.size()), &revents);
    if (err < 0) {
        error_ = std::string("poll revents: ") + snd_strerror(err);
        broken = true;
        return false;
    }
    broken = (revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    return (revents & POLLIN) != 0;
}

long RawMidiPort::read(std::span<uint8_t> into)
{
    ssize_t n = snd_rawmidi_read(in_, into.data(), into.size());
    if (n == -EAGAIN)
        return 0;
    return static_cast<long>(n);
}

int RawMidiPort::write(std::span<const uint8_t> bytes)
{
    ssize_t n = snd_rawmidi_write(out_, bytes.data(), bytes.size());
    if (n < 0)
        return static_cast<int>(n);
    return static_cast<size_t>(n) == bytes.size() ? 0 : -EAGAIN;
}

}  // namespace dialcraft
