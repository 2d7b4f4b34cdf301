#pragma once
// The sender's own clock: while one of these lives, every send the link
// makes through the MIDI service is stamped with the monotonic clock as the
// service's send call returns, inside the VM, on the sending thread. The
// pause between two messages is the sender's doing, so it is checked on these
// stamps; what arrives at the controller also carries USB delivery jitter.
#include <cstdint>
#include <vector>

#include "midi/host_selection.h"

using namespace dialcraft;

class SendClock final : public MidiSendObserver {
public:
    SendClock();
    ~SendClock() override;
    SendClock(const SendClock&) = delete;
    SendClock& operator=(const SendClock&) = delete;

    void sent(MidiObjectRef destination, const uint8_t* bytes, size_t length, MidiStatus status) override;

    // Monotonic nanoseconds of each send the service accepted, in order.
    const std::vector<int64_t>& accepted() const { return accepted_; }

private:
    MidiSendObserver* previous_ = nullptr;
    std::vector<int64_t> accepted_;
};
