#pragma once
// The controller emulator of tools/ run as a child process on a gadget's raw
// MIDI device, and what its event log says the controller received.
#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

struct ReceivedMessage {
    int64_t monotonic_ns = 0;
    std::vector<uint8_t> bytes;
};

class EmulatedController {
public:
    EmulatedController(std::string emulator_path, std::string log_path);
    ~EmulatedController();
    EmulatedController(const EmulatedController&) = delete;
    EmulatedController& operator=(const EmulatedController&) = delete;

    // Starts the emulator on `device` and waits until it reports ready.
    // False, with the reason in error(), when it fails or does not answer.
    bool start(const std::string& device, std::chrono::milliseconds timeout);
    // Asks the controller to send these bytes to the host ("b0 4a 40").
    bool send(const std::string& hex_bytes);
    // Ends the emulator: quit command, then a kill if it does not leave in time.
    void stop();
    // True once the emulator process has ended by itself (after an unplug).
    bool wait_for_exit(std::chrono::milliseconds timeout);

    // Polls the event log until a line starting with `prefix` appears.
    bool wait_for_line(const std::string& prefix, std::chrono::milliseconds timeout) const;

    std::vector<std::string> log_lines() const;
    std::vector<ReceivedMessage> received() const;
    // The decoded programming frames, as "knob 5 = Control Change, channel 2, controller 74".
    std::vector<std::string> programmed() const;

    const std::string& error() const { return error_; }
    const std::string& log_path() const { return log_path_; }

private:
    std::string emulator_path_;
    std::string log_path_;
    std::string error_;
    pid_t pid_ = -1;
    int command_fd_ = -1;
};
