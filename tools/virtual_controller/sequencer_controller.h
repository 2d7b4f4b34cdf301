#pragma once
// One virtual controller on the ALSA sequencer: a client named SERIAL with
// one duplex port "SERIAL MIDI 1", as the sequencer shows a plugged-in
// controller, so dialcraft's device, source and destination look-ups find it.
#include <poll.h>

#include <functional>
#include <string>
#include <vector>

#include "controller_emulator/midi_stream_parser.h"

struct _snd_seq;
struct snd_midi_event;

namespace dialcraft {

class SequencerController {
public:
    SequencerController() = default;
    ~SequencerController();
    SequencerController(const SequencerController&) = delete;
    SequencerController& operator=(const SequencerController&) = delete;

    // Creates the client and its port; false with the reason in error().
    bool open(const std::string& serial);

    // "128:0"
    std::string address() const;
    std::string port_name() const { return port_name_; }
    std::vector<pollfd> poll_descriptors() const;

    // Reads every event waiting and hands each MIDI message to `received`.
    void drain(const std::function<void(const MidiMessage&)>& received);
    // Sends one message from the port to everything subscribed to it.
    bool send(const MidiMessage& message);
    // The same, waiting while the sequencer has no room for it (a sweep
    // sends faster than any client reads), up to a second.
    bool send_when_room(const MidiMessage& message);

    const std::string& error() const { return error_; }

private:
    bool fail(const std::string& what, int err);

    _snd_seq* seq_ = nullptr;
    snd_midi_event* decoder_ = nullptr;
    snd_midi_event* encoder_ = nullptr;
    int client_ = -1;
    int port_ = -1;
    std::string port_name_;
    std::string error_;
    int last_error_ = 0;  // the ALSA error behind error_
};

}  // namespace dialcraft
