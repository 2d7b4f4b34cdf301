#pragma once
// What the family's controllers sent, handed from the host's listening thread
// to whoever shows it (the window's monitor at its own pace, the cli's
// monitor as it comes). Every message is counted; the inbox itself holds at
// most `capacity` of them, the oldest giving way, so a device that floods
// never grows memory while nobody takes.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

#include "midi/midi_host.h"

namespace dialcraft {

struct HeardMessage {
    std::chrono::system_clock::time_point at;
    // The controller's serial: the first eight characters of its source's
    // name ("4AC3CC27"), terminated.
    char serial[9] = {};
    MidiMessage message;
};

class MonitorInbox final : public MidiListener {
public:
    static constexpr size_t capacity = 4096;

    // `wake` is called on the listening thread when a message arrives in an
    // empty inbox: the taker's cue to come and take. It must not block.
    explicit MonitorInbox(std::function<void()> wake = {});

    // Listening through the selected MIDI host, to every source named after
    // a serial of the family, until stop() or the inbox goes. Returns the
    // host's status.
    MidiStatus start(MidiHost& host);
    void stop();
    bool listening() const { return listening_.active(); }

    bool wants(const char* source_name) override;
    void heard(const char* source_name, const MidiMessage& message) override;
    void lost() override;
    void stopped() override;

    // Moves out what came since the last take, oldest first.
    void take(std::vector<HeardMessage>& out);
    // Waits until something can be taken or `deadline` passes; true when
    // something can be taken.
    bool wait_until(std::chrono::steady_clock::time_point deadline);

    // Every message heard so far, whether or not taken.
    uint64_t received() const { return received_; }
    // Messages that gave way in a full inbox before being taken.
    uint64_t overflowed() const { return overflowed_; }
    // Times the MIDI service said it dropped messages (how many is unknown).
    uint64_t service_losses() const { return service_losses_; }
    // Listening stopped on an error (said on standard error).
    bool failed() const { return failed_; }

    // For tests and benchmarks: the system clock unless set.
    void set_clock(std::function<std::chrono::system_clock::time_point()> clock) { clock_ = std::move(clock); }

private:
    std::function<void()> wake_;
    std::function<std::chrono::system_clock::time_point()> clock_;
    mutable std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<HeardMessage> pending_;
    std::atomic<uint64_t> received_{0};
    std::atomic<uint64_t> overflowed_{0};
    std::atomic<uint64_t> service_losses_{0};
    std::atomic<bool> failed_{false};
    // Last: ends first, so the listening thread is done with this inbox
    // before anything else of it goes.
    MidiChangeWatch listening_;
};

}  // namespace dialcraft
