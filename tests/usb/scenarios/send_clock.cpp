#include "send_clock.h"

#include <ctime>

SendClock::SendClock() : previous_(set_midi_send_observer(this))
{
    // Room for a few programmings, so no allocation lands between sends.
    accepted_.reserve(64);
}

SendClock::~SendClock()
{
    set_midi_send_observer(previous_);
}

void SendClock::sent(MidiObjectRef, const uint8_t*, size_t, MidiStatus status)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    if (status == 0)
        accepted_.push_back(static_cast<int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec);
}
