#pragma once
// A MIDI host that passes every call on to another one and times it, so the
// link's own work per message can be split into the host's look-ups, the
// send itself (which any sender makes) and what the link did between host
// calls. A message's work runs from its scan's first host call (the device
// count, right after the 8 ms pause) to the end of its send.
#include <chrono>
#include <cstdint>
#include <vector>

#include "midi/forwarding_midi_host.h"

using namespace dialcraft;

class TimedMidiHost final : public ForwardingMidiHost {
public:
    struct Message {
        double work_ms = 0;    // first call of the scan to the end of the send
        double lookup_ms = 0;  // of which inside host calls other than the send
        double send_ms = 0;    // of which inside the send
        int calls = 0;         // host calls made
    };

    explicit TimedMidiHost(MidiHost& inner) : ForwardingMidiHost(inner) {}

    // Every message that ended in a send since the last call.
    std::vector<Message> take_messages();

    // Timed: the calls a message's scan and send make. Opening and closing
    // the client, and watches, pass on untimed.
    size_t number_of_sources() override;
    MidiObjectRef get_source(size_t index) override;
    size_t number_of_destinations() override;
    MidiObjectRef get_destination(size_t index) override;
    size_t number_of_devices() override;
    MidiObjectRef get_device(size_t index) override;
    MidiStatus get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer, size_t size) override;
    MidiStatus get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value) override;
    MidiStatus port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref) override;
    MidiStatus port_disconnect_source(MidiObjectRef port, MidiObjectRef source) override;
    MidiStatus send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length) override;

private:
    using Clock = std::chrono::steady_clock;
    template <typename Call>
    auto timed(Call call);

    bool in_message_ = false;
    Clock::time_point message_start_{};
    Message current_;
    std::vector<Message> messages_;
};
