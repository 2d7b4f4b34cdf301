#pragma once
// What the ALSA host keeps between calls: the clients it opened, and the
// lookups from handles back to them. Private to the files of this folder.
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/alsa/announce_watcher.h"
#include "midi/alsa/card_names.h"
#include "midi/alsa/device_lists.h"
#include "midi/alsa/input_port.h"
#include "midi/alsa/object_ref.h"
#include "midi/alsa/source_listener.h"

typedef struct _snd_seq snd_seq_t;
typedef struct snd_midi_event snd_midi_event_t;

namespace dialcraft {

// The same incomplete types alsa-lib declares, so this header needs none of it.

// One client of ours: the sequencer handle that sends, queries and makes
// subscriptions, its output port, and the input side on a client of its own.
struct AlsaOwnClient {
    uint8_t serial = 0;
    snd_seq_t* seq = nullptr;
    int id = -1;
    std::string name;
    snd_midi_event_t* encoder = nullptr;
    int out_port = -1;
    // Destinations the output port is known to be connected to, while the
    // kept lists stand (a port that went and came back needs a new one).
    std::vector<AlsaAddress> connected;
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
// Fixed buffers: the sequencer's names are at most 63 bytes, and the names
// are read on every look-up, so nothing is allocated for them.
struct AlsaObjectNames {
    char client_name[64] = {};
    char port_name[64] = {};  // empty for clients
    int card = -1;            // the client's sound card, or -1
};

// What the host keeps from one look-up to the next: the device lists and
// the card names read since, true as long as the watcher's count stays at
// `stamp` and our own clients stay as they were at `own_stamp`.
struct AlsaKept {
    bool valid = false;
    uint64_t stamp = 0;
    uint64_t own_stamp = 0;
    AlsaDeviceLists lists;
    std::map<std::pair<int, int>, AlsaCardNames> card_names;  // by card and client
};

struct AlsaMidiHost::State {
    std::vector<std::unique_ptr<AlsaOwnClient>> clients;
    uint8_t last_serial = 0;

    // The one listener on the announce port, serving both what is kept and
    // the change watches; running while a client is open or a watch runs.
    MidiChangeSubscribers watches;
    std::unique_ptr<AlsaAnnounceWatcher> watcher;
    // Moves whenever our own clients (or the watcher's) come or go, which
    // changes what counts as a device.
    uint64_t own_changes = 0;
    AlsaKept kept;
    // The monitor's listeners, each on a client of its own (listen()).
    std::vector<std::unique_ptr<AlsaSourceListener>> listeners;
    std::chrono::steady_clock::time_point last_queue_check{};  // see device_lists()
    // The card names last read while nothing could be kept.
    AlsaCardNames uncached_card;

    ~State();

    // Opens the watcher if there is none or its thread has stopped. Returns
    // 0 or the error of opening it.
    MidiStatus start_watcher();
    // Closes the watcher once nothing needs it: no client and no watch.
    void stop_watcher_if_idle();

    // The device lists as the sequencer has them now: the kept ones while
    // nothing has changed since, else read afresh in one walk. With
    // `check_queue` (the counts that start a scan), no announcement may be
    // waiting to be read either; that costs a poll() call, made at most once
    // in 2 ms. Empty while no client of ours is open.
    const AlsaDeviceLists& device_lists(bool check_queue);
    // The names of sound card `card`, which client `client` belongs to, or
    // nullptr when they cannot be read; kept along with the device lists.
    // Call after device_lists(); valid until the next call.
    const AlsaCardNames* card_names(int card, int client);
    // Whether the device, source or destination behind `ref` is in the kept
    // lists, which are brought up to date first; false when nothing is kept.
    bool kept_has(const AlsaRef& ref);

    uint8_t next_serial();
    // Queries go through the first open client; with none there is nothing to see.
    snd_seq_t* query_seq() const;
    bool is_own_client(int id) const;

    AlsaOwnClient* find_client(const AlsaRef& ref) const;
    AlsaOwnClient* find_output_port(const AlsaRef& ref) const;
    AlsaOwnClient* find_input_port(const AlsaRef& ref) const;

    // Checks that the object behind `ref` exists right now and reads its
    // names. A port's own look-up is one query; its client's name and card
    // take a second one, made only when `need_client` asks for them.
    MidiStatus look_up(const AlsaRef& ref, bool need_client, AlsaObjectNames* names) const;
    // The capability bits of the port client:port, read through `seq`.
    static MidiStatus port_capability(snd_seq_t* seq, int client, int port, unsigned int* caps);
};

}  // namespace dialcraft
