#pragma once
// The gadget's raw MIDI device, opened for both directions: its input
// carries what the host sends to the controller, its output what the
// controller sends to the host.
#include <poll.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct _snd_rawmidi;

namespace dialcraft {

class RawMidiPort {
public:
    RawMidiPort() = default;
    ~RawMidiPort();
    RawMidiPort(const RawMidiPort&) = delete;
    RawMidiPort& operator=(const RawMidiPort&) = delete;

    // Opens `device` (for example "hw:G4AC1CC27,0") non-blocking. On failure
    // returns false and leaves the reason in error().
    bool open(const std::string& device);

    // Descriptors to poll for incoming bytes.
    std::vector<pollfd> poll_descriptors();
    // Interprets the polled descriptors: true when input is readable; sets
    // `broken` when the device reports an error or hang-up.
    bool readable(std::span<pollfd> fds, bool& broken);

    // Reads what is there: the bytes read (possibly none), or a negative
    // ALSA error code.
    long read(std::span<uint8_t> into);
    // Queues all bytes for the host without waiting: the host takes them only
    // when it reads, and the emulator must keep serving its input meanwhile.
    // 0, or a negative ALSA error (-EAGAIN when they do not all fit).
    int write(std::span<const uint8_t> bytes);

    const std::string& error() const { return error_; }

private:
    _snd_rawmidi* in_ = nullptr;
    _snd_rawmidi* out_ = nullptr;
    std::string error_;
};

}  // namespace dialcraft
