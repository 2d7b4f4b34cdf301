#pragma once
// What the ALSA host keeps between calls: the clients it opened, and the
// lookups from handles back to them. Private to the files of this folder.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/alsa/input_port.h"
#include "midi/alsa/object_ref.h"

// The same incomplete types alsa-lib declares, so this header needs none of it.
typedef struct _snd_seq snd_seq_t;
typedef struct snd_midi_event snd_midi_event_t;

// One client of ours: the sequencer handle that sends, queries and makes
// subscriptions, its output port, and the input side on a client of its own.
struct AlsaOwnClient {
    uint8_t serial = 0;
    snd_seq_t* seq = nullptr;
    int id = -1;
    std::string name;
    snd_midi_event_t* encoder = nullptr;
    int out_port = -1;
    uint8_t out_serial = 0;
    std::unique_ptr<AlsaInputPort> input;
    uint8_t in_serial = 0;

    AlsaOwnClient() = default;
    AlsaOwnClient(const AlsaOwnClient&) = delete;
    AlsaOwnClient& operator=(const AlsaOwnClient&) = delete;
    ~AlsaOwnClient() { close(); }

    // Joins the input thread before closing anything; returns the first failure.
    MidiStatus close();
};

// What a handle's object is called right now, read from the sequencer.
struct AlsaObjectNames {
    std::string client_name;
    std::string port_name;  // empty for clients
    int card = -1;          // the client's sound card, or -1
};

struct AlsaMidiHost::State {
    std::vector<std::unique_ptr<AlsaOwnClient>> clients;
    uint8_t last_serial = 0;

    uint8_t next_serial();
    // Queries go through the first open client; with none there is nothing to see.
    snd_seq_t* query_seq() const;
    bool is_own_client(int id) const;

    AlsaOwnClient* find_client(const AlsaRef& ref) const;
    AlsaOwnClient* find_output_port(const AlsaRef& ref) const;
    AlsaOwnClient* find_input_port(const AlsaRef& ref) const;

    // Checks that the object behind `ref` exists right now and reads its names.
    MidiStatus look_up(const AlsaRef& ref, AlsaObjectNames* names) const;
    // The capability bits of the port client:port, read through `seq`.
    static MidiStatus port_capability(snd_seq_t* seq, int client, int port, unsigned int* caps);
};
