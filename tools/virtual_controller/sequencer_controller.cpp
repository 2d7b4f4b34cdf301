#include "virtual_controller/sequencer_controller.h"

#include <alsa/asoundlib.h>
#include <poll.h>

#include <cerrno>
#include <chrono>

#include <array>

#include "base/sequencer_device.h"

namespace dialcraft {

SequencerController::~SequencerController()
{
    if (decoder_)
        snd_midi_event_free(decoder_);
    if (encoder_)
        snd_midi_event_free(encoder_);
    if (seq_)
        snd_seq_close(seq_);
}

namespace {
void quiet_alsa_errors(const char*, int, const char*, int, const char*, ...) {}
}  // namespace

bool SequencerController::fail(const std::string& what, int err)
{
    error_ = what + ": " + snd_strerror(err);
    last_error_ = err;
    return false;
}

bool SequencerController::open(const std::string& serial)
{
    // alsa-lib also prints some failures it returns (a missing /dev/snd/seq)
    // on standard error; this program says them once, in its own words.
    snd_lib_error_set_handler(quiet_alsa_errors);
    if (int err = snd_seq_open(&seq_, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK); err < 0) {
        seq_ = nullptr;
        if (const auto reason = sequencer_unavailable_reason()) {
            error_ = sequencer_unavailable_text(*reason);
            return false;
        }
        return fail("无法打开 ALSA 音序器(cannot open the ALSA sequencer)", err);
    }
    if (int err = snd_seq_set_client_name(seq_, serial.c_str()); err < 0)
        return fail("snd_seq_set_client_name", err);
    client_ = snd_seq_client_id(seq_);
    port_name_ = serial + " MIDI 1";
    // Readable and writable, and open to subscriptions both ways, like the
    // port of a USB controller.
    port_ = snd_seq_create_simple_port(seq_, port_name_.c_str(),
                                       SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ | SND_SEQ_PORT_CAP_WRITE |
                                           SND_SEQ_PORT_CAP_SUBS_WRITE | SND_SEQ_PORT_CAP_DUPLEX,
                                       SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (port_ < 0)
        return fail("snd_seq_create_simple_port", port_);
    if (int err = snd_midi_event_new(256, &decoder_); err < 0)
        return fail("snd_midi_event_new", err);
    if (int err = snd_midi_event_new(256, &encoder_); err < 0)
        return fail("snd_midi_event_new", err);
    // Every decoded message starts with its status byte: no running status.
    snd_midi_event_no_status(decoder_, 1);
    return true;
}

std::string SequencerController::address() const
{
    return std::to_string(client_) + ":" + std::to_string(port_);
}

std::vector<pollfd> SequencerController::poll_descriptors() const
{
    std::vector<pollfd> fds(static_cast<size_t>(snd_seq_poll_descriptors_count(seq_, POLLIN)));
    const int n = snd_seq_poll_descriptors(seq_, fds.data(), static_cast<unsigned int>(fds.size()), POLLIN);
    fds.resize(static_cast<size_t>(n < 0 ? 0 : n));
    return fds;
}

void SequencerController::drain(const std::function<void(const MidiMessage&)>& received)
{
    for (;;) {
        snd_seq_event_t* event = nullptr;
        const int left = snd_seq_event_input(seq_, &event);
        if (left < 0 || !event)
            return;  // -EAGAIN: nothing more waiting
        std::array<unsigned char, 64> bytes{};
        snd_midi_event_reset_decode(decoder_);
        // Sequencer notices (subscriptions and the like) are no MIDI bytes.
        const long n = snd_midi_event_decode(decoder_, bytes.data(), static_cast<long>(bytes.size()), event);
        if (n > 0)
            received(MidiMessage(bytes.begin(), bytes.begin() + n));
    }
}

bool SequencerController::send(const MidiMessage& message)
{
    snd_seq_event_t event;
    snd_seq_ev_clear(&event);
    snd_midi_event_reset_encode(encoder_);
    const long used = snd_midi_event_encode(encoder_, message.data(), static_cast<long>(message.size()), &event);
    if (used < 0)
        return fail("snd_midi_event_encode", static_cast<int>(used));
    if (event.type == SND_SEQ_EVENT_NONE) {
        error_ = "snd_midi_event_encode: incomplete message";
        return false;
    }
    snd_seq_ev_set_source(&event, static_cast<unsigned char>(port_));
    snd_seq_ev_set_subs(&event);
    snd_seq_ev_set_direct(&event);
    if (int err = snd_seq_event_output_direct(seq_, &event); err < 0)
        return fail("snd_seq_event_output_direct", err);
    return true;
}

bool SequencerController::send_when_room(const MidiMessage& message)
{
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (!send(message)) {
        if (last_error_ != -EAGAIN || std::chrono::steady_clock::now() > limit)
            return false;
        // Room comes back as the receivers read; the handle says when.
        pollfd fds[4];
        const int n = snd_seq_poll_descriptors(seq_, fds, 4, POLLOUT);
        if (n > 0)
            poll(fds, static_cast<nfds_t>(n), 10);
    }
    return true;
}

}  // namespace dialcraft
