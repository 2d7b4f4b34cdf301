#pragma once
// The emulator's record of what happened at the controller, one line per
// event, appended to a file with a single write per line so that a reader
// polling the file never sees half a line.
//
//   ready <device>
//   msg <monotonic ns> <bytes in hex>        a message received from the host
//   knob <k> = <type>, channel <c>, controller <n>   a completed programming frame
//   sent <monotonic ns> <bytes in hex>       bytes queued for the host
//   gone <reason>                            the device went away
//   error <text>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "controller_emulator/knob_programming_decoder.h"

namespace dialcraft {

class EventLog {
public:
    // Appends to `path`, creating it. An empty path or "-" logs to stdout.
    explicit EventLog(const std::string& path);
    ~EventLog();
    EventLog(const EventLog&) = delete;
    EventLog& operator=(const EventLog&) = delete;

    bool ok() const { return fd_ >= 0; }

    void ready(std::string_view device);
    void received(int64_t monotonic_ns, std::span<const uint8_t> bytes);
    void programmed(const KnobSetting& setting);
    void sent(int64_t monotonic_ns, std::span<const uint8_t> bytes);
    void gone(std::string_view reason);
    void error(std::string_view text);

private:
    void line(const std::string& text);

    int fd_ = -1;
    bool owns_fd_ = false;
};

// Current CLOCK_MONOTONIC time in nanoseconds.
int64_t monotonic_ns();

}  // namespace dialcraft
