#include "timed_host.h"

using namespace dialcraft;

namespace {
double ms_between(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to)
{
    return std::chrono::duration<double, std::milli>(to - from).count();
}
}  // namespace

template <typename Call>
auto TimedMidiHost::timed(Call call)
{
    const Clock::time_point start = Clock::now();
    if (!in_message_) {
        in_message_ = true;
        message_start_ = start;
        current_ = Message{};
    }
    auto result = call();
    current_.lookup_ms += ms_between(start, Clock::now());
    ++current_.calls;
    return result;
}

std::vector<TimedMidiHost::Message> TimedMidiHost::take_messages()
{
    std::vector<Message> taken;
    taken.swap(messages_);
    return taken;
}

size_t TimedMidiHost::number_of_devices()
{
    // A scan starts a message; a scan-only call ends without a send and its
    // figures go with the next one, so only the scan of a real message counts.
    in_message_ = false;
    return timed([&] { return inner().number_of_devices(); });
}

MidiStatus TimedMidiHost::send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length)
{
    const double lookups_before = current_.lookup_ms;
    const MidiStatus status = timed([&] { return inner().send(port, destination, bytes, length); });
    current_.send_ms = current_.lookup_ms - lookups_before;
    current_.lookup_ms = lookups_before;
    current_.work_ms = ms_between(message_start_, Clock::now());
    messages_.push_back(current_);
    in_message_ = false;
    return status;
}

size_t TimedMidiHost::number_of_sources()
{
    return timed([&] { return inner().number_of_sources(); });
}

MidiObjectRef TimedMidiHost::get_source(size_t index)
{
    return timed([&] { return inner().get_source(index); });
}

size_t TimedMidiHost::number_of_destinations()
{
    return timed([&] { return inner().number_of_destinations(); });
}

MidiObjectRef TimedMidiHost::get_destination(size_t index)
{
    return timed([&] { return inner().get_destination(index); });
}

MidiObjectRef TimedMidiHost::get_device(size_t index)
{
    return timed([&] { return inner().get_device(index); });
}

MidiStatus TimedMidiHost::get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer, size_t size)
{
    return timed([&] { return inner().get_string_property(obj, prop, buffer, size); });
}

MidiStatus TimedMidiHost::get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value)
{
    return timed([&] { return inner().get_integer_property(obj, prop, value); });
}

MidiStatus TimedMidiHost::port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref)
{
    return timed([&] { return inner().port_connect_source(port, source, conn_ref); });
}

MidiStatus TimedMidiHost::port_disconnect_source(MidiObjectRef port, MidiObjectRef source)
{
    return timed([&] { return inner().port_disconnect_source(port, source); });
}
