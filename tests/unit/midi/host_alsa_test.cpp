// The ALSA host on a machine without a sequencer device: every call must fail
// cleanly with a status, touch no output buffer, print nothing and not hang.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/alsa/object_ref.h"

using namespace dialcraft;

namespace {

void ignore_packets(const MidiPacketList*, void*, void*) {}

class AlsaHostWithoutSequencer : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (std::filesystem::exists("/dev/snd/seq"))
            GTEST_SKIP() << "/dev/snd/seq exists: these cases need a machine without a sequencer";
        host = make_alsa_midi_host();
    }

    // Handles shaped like real ones, for objects that do not exist.
    static MidiObjectRef made_up(AlsaRefKind kind, uint8_t client, uint8_t port)
    {
        return encode_alsa_ref(AlsaRef{kind, 1, client, port});
    }

    std::unique_ptr<MidiHost> host;
};

TEST_F(AlsaHostWithoutSequencer, ClientCreateReturnsTheAlsaErrorAndLeavesTheHandle)
{
    MidiObjectRef client = 0x5A5A5A5A;
    EXPECT_EQ(host->client_create("MIDI Client", &client), -ENOENT);
    EXPECT_EQ(client, 0x5A5A5A5Au);
}

TEST_F(AlsaHostWithoutSequencer, ClientCreatePrintsNothing)
{
    MidiObjectRef client = 0;
    // alsa-lib itself must stay silent, so the raw descriptors are caught here.
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    const MidiStatus status = host->client_create("MIDI Client", &client);
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(status, 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "");
}

TEST_F(AlsaHostWithoutSequencer, PortsCannotBeCreatedWithoutAClient)
{
    MidiObjectRef client = 0;
    ASSERT_NE(host->client_create("MIDI Client", &client), 0);
    MidiObjectRef out_port = 0x11111111;
    MidiObjectRef in_port = 0x22222222;
    EXPECT_EQ(host->output_port_create(client, "Output port", &out_port), -EINVAL);
    EXPECT_EQ(host->input_port_create(client, "Input port", ignore_packets, nullptr, &in_port), -EINVAL);
    EXPECT_EQ(out_port, 0x11111111u);
    EXPECT_EQ(in_port, 0x22222222u);

    // A handle of a client that is not open is refused as well.
    const MidiObjectRef stale = made_up(AlsaRefKind::client, 128, 0);
    EXPECT_EQ(host->output_port_create(stale, "Output port", &out_port), -ENOENT);
    EXPECT_EQ(host->input_port_create(stale, "Input port", ignore_packets, nullptr, &in_port), -ENOENT);
    EXPECT_EQ(out_port, 0x11111111u);
    EXPECT_EQ(in_port, 0x22222222u);
}

TEST_F(AlsaHostWithoutSequencer, NothingIsCountedOrFound)
{
    MidiObjectRef client = 0;
    ASSERT_NE(host->client_create("MIDI Client", &client), 0);
    EXPECT_EQ(host->number_of_sources(), 0u);
    EXPECT_EQ(host->number_of_destinations(), 0u);
    EXPECT_EQ(host->number_of_devices(), 0u);
    for (size_t index : {size_t{0}, size_t{1}, size_t{255}}) {
        EXPECT_EQ(host->get_source(index), 0u) << index;
        EXPECT_EQ(host->get_destination(index), 0u) << index;
        EXPECT_EQ(host->get_device(index), 0u) << index;
    }
}

TEST_F(AlsaHostWithoutSequencer, PropertyReadsFailAndLeaveTheBuffersUntouched)
{
    const MidiObjectRef objects[] = {
        0,
        made_up(AlsaRefKind::source, 20, 0),
        made_up(AlsaRefKind::destination, 20, 0),
        made_up(AlsaRefKind::device, 20, 0),
        made_up(AlsaRefKind::client, 128, 0),
        made_up(AlsaRefKind::output_port, 128, 0),
        made_up(AlsaRefKind::input_port, 129, 0),
    };
    for (MidiObjectRef obj : objects) {
        for (MidiStringProperty prop :
             {MidiStringProperty::name, MidiStringProperty::manufacturer, MidiStringProperty::model}) {
            char buffer[64];
            std::memset(buffer, 0, sizeof buffer);
            std::strcpy(buffer, "4AC1CC27 earlier text");
            EXPECT_NE(host->get_string_property(obj, prop, buffer, sizeof buffer), 0) << std::hex << obj;
            EXPECT_STREQ(buffer, "4AC1CC27 earlier text") << std::hex << obj;
        }
        int32_t offline = 7;
        EXPECT_NE(host->get_integer_property(obj, MidiIntegerProperty::offline, &offline), 0) << std::hex << obj;
        EXPECT_EQ(offline, 7) << std::hex << obj;
    }
}

TEST_F(AlsaHostWithoutSequencer, SendFails)
{
    const uint8_t note_on[] = {0x91, 0x4A, 0x05};
    const uint8_t clock[] = {0xF8};
    EXPECT_EQ(host->send(0, 0, note_on, sizeof note_on), -EINVAL);
    const MidiObjectRef port = made_up(AlsaRefKind::output_port, 128, 0);
    const MidiObjectRef dest = encode_alsa_ref(AlsaRef{AlsaRefKind::destination, 0, 20, 0});
    EXPECT_EQ(host->send(port, dest, note_on, sizeof note_on), -ENOENT);
    EXPECT_EQ(host->send(port, dest, clock, sizeof clock), -ENOENT);
    // A destination handle is no port to send from, and a source is no destination.
    EXPECT_EQ(host->send(dest, dest, clock, sizeof clock), -EINVAL);
    EXPECT_EQ(host->send(port, encode_alsa_ref(AlsaRef{AlsaRefKind::source, 0, 20, 0}), clock, sizeof clock), -EINVAL);
}

TEST_F(AlsaHostWithoutSequencer, ConnectAndDisconnectFail)
{
    const MidiObjectRef source = encode_alsa_ref(AlsaRef{AlsaRefKind::source, 0, 20, 0});
    EXPECT_NE(host->port_connect_source(0, source, nullptr), 0);
    EXPECT_NE(host->port_disconnect_source(0, source), 0);
    for (MidiObjectRef port : {made_up(AlsaRefKind::output_port, 128, 0), made_up(AlsaRefKind::input_port, 129, 0)}) {
        EXPECT_EQ(host->port_connect_source(port, source, nullptr), -ENOENT);
        EXPECT_EQ(host->port_disconnect_source(port, source), -ENOENT);
        EXPECT_EQ(host->port_connect_source(port, 0, nullptr), -EINVAL);
    }
}

TEST_F(AlsaHostWithoutSequencer, DisposeOfNullOrUnknownHandlesFails)
{
    EXPECT_EQ(host->client_dispose(0), -EINVAL);
    EXPECT_EQ(host->port_dispose(0), -EINVAL);
    EXPECT_EQ(host->client_dispose(made_up(AlsaRefKind::client, 128, 0)), -ENOENT);
    EXPECT_EQ(host->port_dispose(made_up(AlsaRefKind::output_port, 128, 0)), -ENOENT);
    EXPECT_EQ(host->port_dispose(made_up(AlsaRefKind::input_port, 129, 0)), -ENOENT);
    // Sources and devices belong to other programs and cannot be disposed here.
    EXPECT_EQ(host->port_dispose(encode_alsa_ref(AlsaRef{AlsaRefKind::source, 0, 20, 0})), -EINVAL);
    EXPECT_EQ(host->client_dispose(encode_alsa_ref(AlsaRef{AlsaRefKind::device, 0, 20, 0})), -EINVAL);
}

void count_change(void* context)
{
    ++*static_cast<int*>(context);
}

TEST_F(AlsaHostWithoutSequencer, ChangesCannotBeWatchedAndNothingIsCalled)
{
    int calls = 0;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    MidiChangeWatch watch;
    EXPECT_EQ(host->watch_changes(count_change, &calls, &watch), -ENOENT);
    EXPECT_FALSE(watch.active());
    MidiObjectRef client = 0;
    EXPECT_NE(host->client_create("MIDI Client", &client), 0);
    EXPECT_EQ(host->watch_changes(count_change, &calls, &watch), -ENOENT);
    EXPECT_FALSE(watch.active());
    // Ending a watch that never started is no failure.
    watch.reset();
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "");
}

// The link opens and closes in this order whatever the statuses; all of it
// must fail, and repeating it must behave the same.
TEST_F(AlsaHostWithoutSequencer, OpenAndCloseSequenceFailsEveryStepTwice)
{
    for (int round = 0; round < 2; ++round) {
        MidiObjectRef client = 0;
        MidiObjectRef out_port = 0;
        MidiObjectRef in_port = 0;
        EXPECT_NE(host->client_create("MIDI Client", &client), 0);
        EXPECT_NE(host->output_port_create(client, "Output port", &out_port), 0);
        EXPECT_NE(host->input_port_create(client, "Input port", ignore_packets, nullptr, &in_port), 0);
        EXPECT_EQ(client, 0u);
        EXPECT_EQ(out_port, 0u);
        EXPECT_EQ(in_port, 0u);
        EXPECT_NE(host->client_dispose(client), 0);
        EXPECT_NE(host->port_dispose(out_port), 0);
        EXPECT_NE(host->port_dispose(in_port), 0);
    }
}

}  // namespace
