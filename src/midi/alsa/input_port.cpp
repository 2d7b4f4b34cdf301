#include "midi/alsa/input_port.h"
#include "midi/alsa/sequencer_reader.h"

#include <alsa/asoundlib.h>

#include <cerrno>
#include <chrono>
#include <map>
#include <mutex>

namespace dialcraft {

struct AlsaInputPort::State final : AlsaEventSink {
    AlsaSequencerReader reader{"input port reader", "what the controllers send is no longer received"};
    snd_midi_event_t* decoder = nullptr;
    int port = -1;
    MidiReadProc proc = nullptr;
    void* proc_ref = nullptr;

    std::mutex refs_mutex;
    std::map<int, void*> source_refs;  // by client << 8 | port

    ~State() override { shut_down(); }

    MidiStatus shut_down();
    void event(const snd_seq_event_t& ev) override;
    void* source_ref(int client, int port);
};

namespace {
int address_key(int client, int port)
{
    return (client << 8) | port;
}
}  // namespace

MidiStatus AlsaInputPort::State::shut_down()
{
    const MidiStatus status = reader.close();
    if (decoder) {
        snd_midi_event_free(decoder);
        decoder = nullptr;
    }
    return status;
}

// Events dropped by a full queue are lost for good (ENOSPC): the reader
// goes on with the next ones, as the default events_lost() does.
void AlsaInputPort::State::event(const snd_seq_event_t& ev)
{
    uint8_t bytes[sizeof(MidiPacket::data)];
    const long length = snd_midi_event_decode(decoder, bytes, sizeof bytes, &ev);
    if (length <= 0)
        return;  // not a MIDI message (or a SysEx chunk too long for a packet)
    MidiPacketList list{};
    MidiPacket* packet = midi_packet_list_init(&list);
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto stamp = static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
    if (!midi_packet_list_add(&list, sizeof list, packet, stamp, static_cast<size_t>(length), bytes))
        return;
    proc(&list, proc_ref, source_ref(ev.source.client, ev.source.port));
}

void* AlsaInputPort::State::source_ref(int client, int port)
{
    std::lock_guard lock(refs_mutex);
    auto it = source_refs.find(address_key(client, port));
    return it == source_refs.end() ? nullptr : it->second;
}

MidiStatus AlsaInputPort::open(const char* client_name, const char* port_name, MidiReadProc proc, void* proc_ref,
                               std::unique_ptr<AlsaInputPort>* out)
{
    if (!client_name || !port_name || !proc || !out)
        return -EINVAL;
    auto state = std::make_unique<State>();
    state->proc = proc;
    state->proc_ref = proc_ref;

    if (MidiStatus err = state->reader.open(client_name); err != 0)
        return err;
    snd_seq_t* seq = state->reader.handle();
    state->port = snd_seq_create_simple_port(seq, port_name, SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE,
                                             SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (state->port < 0)
        return state->port;
    if (int err = snd_midi_event_new(sizeof(MidiPacket::data), &state->decoder); err < 0) {
        state->decoder = nullptr;
        return err;
    }
    // Every packet carries its status byte, as the device sent it.
    snd_midi_event_no_status(state->decoder, 1);

    if (MidiStatus err = state->reader.start(state.get()); err != 0)
        return err;
    out->reset(new AlsaInputPort(std::move(state)));
    return 0;
}

AlsaInputPort::AlsaInputPort(std::unique_ptr<State> state) : state_(std::move(state)) {}

AlsaInputPort::~AlsaInputPort() = default;

int AlsaInputPort::client_id() const
{
    return state_->reader.client_id();
}

int AlsaInputPort::port_id() const
{
    return state_->port;
}

void AlsaInputPort::set_source_ref(int client, int port, void* ref)
{
    std::lock_guard lock(state_->refs_mutex);
    state_->source_refs[address_key(client, port)] = ref;
}

void AlsaInputPort::forget_source_ref(int client, int port)
{
    std::lock_guard lock(state_->refs_mutex);
    state_->source_refs.erase(address_key(client, port));
}

MidiStatus AlsaInputPort::close()
{
    return state_->shut_down();
}

}  // namespace dialcraft
