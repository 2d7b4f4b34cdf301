#pragma once
// A MIDI host that passes every call on to another one and times it, so the
// link's own work per message can be split into the host's look-ups, the
// send itself (which any sender makes) and what the link did between host
// calls. A message's work runs from its scan's first host call (the device
// count, right after the 8 ms pause) to the end of its send.
#include <chrono>
#include <cstdint>
#include <vector>

#include "midi/midi_host.h"

class TimedMidiHost final : public MidiHost {
public:
    struct Message {
        double work_ms = 0;    // first call of the scan to the end of the send
        double lookup_ms = 0;  // of which inside host calls other than the send
        double send_ms = 0;    // of which inside the send
        int calls = 0;         // host calls made
    };

    explicit TimedMidiHost(MidiHost& inner) : inner_(inner) {}

    // Every message that ended in a send since the last call.
    std::vector<Message> take_messages();

    MidiStatus client_create(const char* name, MidiObjectRef* out_client) override;
    MidiStatus output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port) override;
    MidiStatus input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc, void* proc_ref,
                                 MidiObjectRef* out_port) override;
    MidiStatus client_dispose(MidiObjectRef client) override;
    MidiStatus port_dispose(MidiObjectRef port) override;
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
    MidiStatus watch_changes(MidiChangeProc proc, void* context) override;

private:
    using Clock = std::chrono::steady_clock;
    template <typename Call>
    auto timed(Call call);

    MidiHost& inner_;
    bool in_message_ = false;
    Clock::time_point message_start_{};
    Message current_;
    std::vector<Message> messages_;
};
