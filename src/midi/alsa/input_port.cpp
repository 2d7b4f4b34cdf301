#include "midi/alsa/input_port.h"
#include "midi/alsa/wake_poll.h"

#include <alsa/asoundlib.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

struct AlsaInputPort::State {
    snd_seq_t* seq = nullptr;
    snd_midi_event_t* decoder = nullptr;
    int client = -1;
    int port = -1;
    // Written by close() to wake the thread out of poll().
    int wake_fd = -1;
    // wake_fd first, then the sequencer's descriptors.
    std::vector<pollfd> fds;
    MidiReadProc proc = nullptr;
    void* proc_ref = nullptr;

    std::mutex refs_mutex;
    std::map<int, void*> source_refs;  // by client << 8 | port

    std::thread thread;

    ~State() { shut_down(); }

    MidiStatus shut_down();
    void run();
    void drain();
    void deliver(const snd_seq_event_t& ev);
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
    stop_poll_thread(&thread, wake_fd);
    MidiStatus status = 0;
    if (decoder) {
        snd_midi_event_free(decoder);
        decoder = nullptr;
    }
    if (seq) {
        status = snd_seq_close(seq);
        seq = nullptr;
    } else {
        status = -EBADF;
    }
    close_wake_fd(&wake_fd);
    return status;
}

void AlsaInputPort::State::run()
{
    const auto seq_fd_count = static_cast<unsigned int>(fds.size() - 1);
    for (;;) {
        for (pollfd& fd : fds)
            fd.revents = 0;
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        if (fds[0].revents != 0)
            return;
        unsigned short revents = 0;
        if (snd_seq_poll_descriptors_revents(seq, fds.data() + 1, seq_fd_count, &revents) < 0)
            return;
        if (revents & (POLLERR | POLLHUP | POLLNVAL))
            return;
        if (revents & POLLIN)
            drain();
    }
}

void AlsaInputPort::State::drain()
{
    for (;;) {
        snd_seq_event_t* ev = nullptr;
        const int rc = snd_seq_event_input(seq, &ev);
        if (rc == -ENOSPC)
            continue;  // the kernel dropped events while we were slow; read on
        if (rc < 0)
            return;  // -EAGAIN: nothing left
        if (ev)
            deliver(*ev);
    }
}

void AlsaInputPort::State::deliver(const snd_seq_event_t& ev)
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

    if (int err = snd_seq_open(&state->seq, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK); err < 0) {
        state->seq = nullptr;
        return err;
    }
    if (int err = snd_seq_set_client_name(state->seq, client_name); err < 0)
        return err;
    state->client = snd_seq_client_id(state->seq);
    if (state->client < 0)
        return state->client;
    state->port = snd_seq_create_simple_port(state->seq, port_name,
                                             SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE,
                                             SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (state->port < 0)
        return state->port;
    if (int err = snd_midi_event_new(sizeof(MidiPacket::data), &state->decoder); err < 0) {
        state->decoder = nullptr;
        return err;
    }
    // Every packet carries its status byte, as the device sent it.
    snd_midi_event_no_status(state->decoder, 1);

    if (MidiStatus err = open_wake_poll(state->seq, SIZE_MAX, &state->wake_fd, &state->fds); err != 0)
        return err;

    if (MidiStatus err = start_poll_thread(&state->thread, [s = state.get()] { s->run(); }); err != 0)
        return err;
    out->reset(new AlsaInputPort(std::move(state)));
    return 0;
}

AlsaInputPort::AlsaInputPort(std::unique_ptr<State> state) : state_(std::move(state)) {}

AlsaInputPort::~AlsaInputPort() = default;

int AlsaInputPort::client_id() const
{
    return state_->client;
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
