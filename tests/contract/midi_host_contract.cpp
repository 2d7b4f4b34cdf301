#include "midi_host_contract.h"

#include <atomic>
#include <cstring>
#include <mutex>
#include <thread>
#include <utility>

namespace dialcraft {

using namespace std::chrono_literals;

namespace {

// How long the ALSA host may take to deliver; the simulated one is at once.
constexpr auto delivery_time = 5s;

// Polls `done` until it holds or `within` has passed.
template <typename Done>
bool wait_until(Done done, std::chrono::milliseconds within)
{
    const auto deadline = std::chrono::steady_clock::now() + within;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

std::string read_string(MidiHost& host, MidiObjectRef obj, MidiStringProperty prop)
{
    char buffer[64] = {};
    return host.get_string_property(obj, prop, buffer, sizeof buffer) == 0 ? buffer : "";
}

bool begins_with(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

// The last endpoint whose name begins with `serial`, as the link looks for
// it; 0 when there is none.
MidiObjectRef find_endpoint(MidiHost& host, bool source, const std::string& serial)
{
    const size_t count = source ? host.number_of_sources() : host.number_of_destinations();
    MidiObjectRef found = 0;
    for (size_t i = 0; i < count; ++i) {
        const MidiObjectRef obj = source ? host.get_source(i) : host.get_destination(i);
        if (obj != 0 && begins_with(read_string(host, obj, MidiStringProperty::name), serial))
            found = obj;
    }
    return found;
}

// What the read callback was given: each packet's bytes and the source's
// connection reference.
struct Received {
    std::mutex mutex;
    std::vector<std::pair<std::vector<uint8_t>, void*>> packets;

    bool has(const std::vector<uint8_t>& bytes, void* conn_ref)
    {
        const std::lock_guard lock(mutex);
        for (const auto& [b, ref] : packets)
            if (b == bytes && ref == conn_ref)
                return true;
        return false;
    }
};

void record_packets(const MidiPacketList* list, void* read_proc_ref, void* src_conn_ref)
{
    auto* received = static_cast<Received*>(read_proc_ref);
    const std::lock_guard lock(received->mutex);
    const MidiPacket* packet = &list->packet[0];
    for (uint32_t i = 0; i < list->numPackets; ++i, packet = midi_packet_next(packet))
        received->packets.emplace_back(std::vector<uint8_t>(packet->data, packet->data + packet->length), src_conn_ref);
}

void count_call(void* context)
{
    ++*static_cast<std::atomic<int>*>(context);
}

// The link's client with both its ports.
struct OpenClient {
    MidiObjectRef client = 0;
    MidiObjectRef out_port = 0;
    MidiObjectRef in_port = 0;
};

}  // namespace

std::string midi_host_bed_name(const testing::TestParamInfo<MidiHostBedMaker>& info)
{
    return info.param.name;
}

TEST_P(MidiHostContract, NothingIsListedWhileNoClientIsOpen)
{
    EXPECT_EQ(host().number_of_sources(), 0u);
    EXPECT_EQ(host().number_of_destinations(), 0u);
    EXPECT_EQ(host().number_of_devices(), 0u);
    EXPECT_EQ(host().get_source(0), 0u);
    EXPECT_EQ(host().get_destination(0), 0u);
    EXPECT_EQ(host().get_device(0), 0u);
}

TEST_P(MidiHostContract, AClientAndItsPortsOpenAndCloseAndTheirHandlesGoWithThem)
{
    OpenClient c;
    ASSERT_EQ(host().client_create("MIDI Client", &c.client), 0);
    ASSERT_EQ(host().output_port_create(c.client, "Output port", &c.out_port), 0);
    ASSERT_EQ(host().input_port_create(c.client, "Input port", record_packets, nullptr, &c.in_port), 0);
    EXPECT_NE(c.client, 0u);
    EXPECT_NE(c.out_port, 0u);
    EXPECT_NE(c.in_port, 0u);
    EXPECT_NE(c.out_port, c.in_port);

    EXPECT_EQ(host().port_dispose(c.out_port), 0);
    EXPECT_NE(host().port_dispose(c.out_port), 0);
    EXPECT_EQ(host().port_dispose(c.in_port), 0);
    EXPECT_NE(host().port_dispose(c.in_port), 0);
    EXPECT_EQ(host().client_dispose(c.client), 0);
    EXPECT_NE(host().client_dispose(c.client), 0);
    MidiObjectRef port = 0x5A5A5A5A;
    EXPECT_NE(host().output_port_create(c.client, "Output port", &port), 0);
    EXPECT_EQ(port, 0x5A5A5A5Au);
    EXPECT_EQ(host().number_of_destinations(), 0u);
}

TEST_P(MidiHostContract, ThePluggedControllerIsADeviceASourceAndADestination)
{
    MidiObjectRef client = 0;
    ASSERT_EQ(host().client_create("MIDI Client", &client), 0);
    const std::string serial = bed->serial();
    const MidiObjectRef source = find_endpoint(host(), true, serial);
    const MidiObjectRef destination = find_endpoint(host(), false, serial);
    EXPECT_NE(source, 0u);
    EXPECT_NE(destination, 0u);
    bool device_found = false;
    for (size_t i = 0; i < host().number_of_devices(); ++i) {
        const MidiObjectRef device = host().get_device(i);
        device_found = device_found || (begins_with(read_string(host(), device, MidiStringProperty::name), serial) &&
                                        begins_with(read_string(host(), device, MidiStringProperty::model), serial));
    }
    EXPECT_TRUE(device_found) << "no device whose name and model begin with " << serial;
    for (MidiObjectRef endpoint : {source, destination}) {
        int32_t offline = 7;
        EXPECT_EQ(host().get_integer_property(endpoint, MidiIntegerProperty::offline, &offline), 0);
        EXPECT_EQ(offline, 0);
        EXPECT_NE(read_string(host(), endpoint, MidiStringProperty::address), "");
    }
    EXPECT_EQ(host().client_dispose(client), 0);
}

TEST_P(MidiHostContract, AnIndexPastTheEndIsNull)
{
    MidiObjectRef client = 0;
    ASSERT_EQ(host().client_create("MIDI Client", &client), 0);
    EXPECT_EQ(host().get_source(host().number_of_sources()), 0u);
    EXPECT_EQ(host().get_destination(host().number_of_destinations()), 0u);
    EXPECT_EQ(host().get_device(host().number_of_devices()), 0u);
    EXPECT_EQ(host().client_dispose(client), 0);
}

TEST_P(MidiHostContract, ATextIsCutToItsBufferAndAFailedReadLeavesTheBufferAlone)
{
    MidiObjectRef client = 0;
    ASSERT_EQ(host().client_create("MIDI Client", &client), 0);
    const MidiObjectRef destination = find_endpoint(host(), false, bed->serial());
    ASSERT_NE(destination, 0u);
    char small[5];
    std::memset(small, 'x', sizeof small);
    ASSERT_EQ(host().get_string_property(destination, MidiStringProperty::name, small, sizeof small), 0);
    EXPECT_EQ(std::string(small), bed->serial().substr(0, 4));

    char buffer[32] = "earlier text";
    EXPECT_NE(host().get_string_property(0, MidiStringProperty::name, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "earlier text");
    int32_t offline = 7;
    EXPECT_NE(host().get_integer_property(0, MidiIntegerProperty::offline, &offline), 0);
    EXPECT_EQ(offline, 7);
    EXPECT_EQ(host().client_dispose(client), 0);
}

TEST_P(MidiHostContract, WhatIsSentReachesTheController)
{
    OpenClient c;
    ASSERT_EQ(host().client_create("MIDI Client", &c.client), 0);
    ASSERT_EQ(host().output_port_create(c.client, "Output port", &c.out_port), 0);
    const MidiObjectRef destination = find_endpoint(host(), false, bed->serial());
    ASSERT_NE(destination, 0u);
    const std::vector<uint8_t> note_on{0x91, 0x4A, 0x05};
    const std::vector<uint8_t> clock{0xF8};
    EXPECT_EQ(host().send(c.out_port, destination, note_on.data(), note_on.size()), 0);
    EXPECT_TRUE(bed->controller_received(note_on, delivery_time));
    EXPECT_EQ(host().send(c.out_port, destination, clock.data(), clock.size()), 0);
    EXPECT_TRUE(bed->controller_received(clock, delivery_time));
    // Sending from a port that is gone fails.
    ASSERT_EQ(host().port_dispose(c.out_port), 0);
    EXPECT_NE(host().send(c.out_port, destination, clock.data(), clock.size()), 0);
    EXPECT_EQ(host().client_dispose(c.client), 0);
}

TEST_P(MidiHostContract, AConnectedSourceDeliversWhatTheControllerSendsWithItsReference)
{
    Received received;
    OpenClient c;
    ASSERT_EQ(host().client_create("MIDI Client", &c.client), 0);
    ASSERT_EQ(host().input_port_create(c.client, "Input port", record_packets, &received, &c.in_port), 0);
    const MidiObjectRef source = find_endpoint(host(), true, bed->serial());
    ASSERT_NE(source, 0u);
    int connection = 0;
    ASSERT_EQ(host().port_connect_source(c.in_port, source, &connection), 0);
    const std::vector<uint8_t> knob_turn{0xB0, 0x4A, 0x40};
    bed->controller_sends(knob_turn);
    EXPECT_TRUE(wait_until([&] { return received.has(knob_turn, &connection); }, delivery_time));
    EXPECT_EQ(host().port_disconnect_source(c.in_port, source), 0);
    EXPECT_EQ(host().client_dispose(c.client), 0);
}

TEST_P(MidiHostContract, EveryWatchIsToldUntilItsTokenEnds)
{
    std::atomic<int> first{0};
    std::atomic<int> second{0};
    std::atomic<int> third{0};
    MidiChangeWatch first_watch;
    MidiChangeWatch second_watch;
    MidiChangeWatch third_watch;
    ASSERT_EQ(host().watch_changes(count_call, &first, &first_watch), 0);
    ASSERT_EQ(host().watch_changes(count_call, &second, &second_watch), 0);
    ASSERT_EQ(host().watch_changes(count_call, &third, &third_watch), 0);
    EXPECT_TRUE(first_watch.active());

    bed->make_change();
    EXPECT_TRUE(wait_until([&] { return first > 0 && second > 0 && third > 0; }, delivery_time));

    // Once a token has ended, its callback is never called again; moving a
    // token moves the watch with it.
    first_watch.reset();
    EXPECT_FALSE(first_watch.active());
    MidiChangeWatch moved = std::move(second_watch);
    EXPECT_FALSE(second_watch.active());
    EXPECT_TRUE(moved.active());
    const int first_before = first;
    const int second_before = second;
    const int third_before = third;
    bed->make_change();
    EXPECT_TRUE(wait_until([&] { return second > second_before && third > third_before; }, delivery_time));
    EXPECT_EQ(first, first_before);

    moved = MidiChangeWatch();
    const int second_after = second;
    const int third_after = third;
    bed->make_change();
    EXPECT_TRUE(wait_until([&] { return third > third_after; }, delivery_time));
    EXPECT_EQ(second, second_after);
    EXPECT_EQ(first, first_before);
}

TEST_P(MidiHostContract, AWatchGoesOnWhileAClientOpensAndCloses)
{
    std::atomic<int> calls{0};
    MidiChangeWatch watch;
    ASSERT_EQ(host().watch_changes(count_call, &calls, &watch), 0);
    MidiObjectRef client = 0;
    ASSERT_EQ(host().client_create("MIDI Client", &client), 0);
    ASSERT_EQ(host().client_dispose(client), 0);
    const int before = calls;
    bed->make_change();
    EXPECT_TRUE(wait_until([&] { return calls > before; }, delivery_time));
}

TEST_P(MidiHostContract, AWatchWithoutACallbackIsRefused)
{
    MidiChangeWatch watch;
    EXPECT_NE(host().watch_changes(nullptr, nullptr, &watch), 0);
    EXPECT_FALSE(watch.active());
}

}  // namespace dialcraft
