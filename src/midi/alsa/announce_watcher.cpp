#include "midi/alsa/announce_watcher.h"
#include "midi/alsa/sequencer_reader.h"

#include <alsa/asoundlib.h>

#include <atomic>
#include <cerrno>

namespace dialcraft {

namespace {
// The announcements that change what the device lists or card names hold.
// Subscriptions are announced too, but they move nothing, and each probe of
// the link makes some, so the kernel is told to keep them from this client.
constexpr int layout_events[] = {
    SND_SEQ_EVENT_CLIENT_START, SND_SEQ_EVENT_CLIENT_EXIT, SND_SEQ_EVENT_CLIENT_CHANGE,
    SND_SEQ_EVENT_PORT_START,   SND_SEQ_EVENT_PORT_EXIT,   SND_SEQ_EVENT_PORT_CHANGE,
};

bool is_layout_event(int type)
{
    for (int t : layout_events)
        if (t == type)
            return true;
    return false;
}
}  // namespace

struct AlsaAnnounceWatcher::State final : AlsaEventSink {
    AlsaSequencerReader reader{"announcement watcher", "device lists are read afresh from now on"};
    int port = -1;

    std::atomic<uint64_t> changes{0};
    std::atomic<bool> reading{false};
    // Set by the thread while it reads a batch of announcements.
    bool changed = false;

    // Told after every counted change; owned by the host, outlives this.
    MidiChangeSubscribers* told = nullptr;

    // The thread first: it may be telling the callback. The reader closes
    // the client after the rest of the state is gone.
    ~State() override { reader.stop_thread(); }

    void tell();

    // Marked before the queue is read, so that from the moment the kernel
    // queue looks empty until the count has moved, readers know to wait.
    void reading_begins() override
    {
        reading = true;
        changed = false;
    }
    void event(const snd_seq_event_t& ev) override
    {
        if (is_layout_event(ev.type))
            changed = true;
    }
    // Any of the dropped announcements may have been a change.
    void events_lost() override { changed = true; }
    void reading_ends() override
    {
        if (changed)
            ++changes;
        reading = false;
        if (changed)
            tell();
    }
    // Whatever was kept may be stale now; a moved count makes every keeper
    // read afresh, and the stopped reader keeps them from keeping again.
    void stopped() override
    {
        ++changes;
        reading = false;
        tell();
    }
};

void AlsaAnnounceWatcher::State::tell()
{
    told->tell();
}

MidiStatus AlsaAnnounceWatcher::open(MidiChangeSubscribers* told, std::unique_ptr<AlsaAnnounceWatcher>* out)
{
    if (!told || !out)
        return -EINVAL;
    auto state = std::make_unique<State>();
    state->told = told;
    if (MidiStatus err = state->reader.open("MIDI Client changes"); err != 0)
        return err;
    snd_seq_t* seq = state->reader.handle();
    for (int type : layout_events)
        if (int err = snd_seq_set_client_event_filter(seq, type); err < 0)
            return err;
    // Writable only for its own subscription, and hidden from other programs.
    state->port = snd_seq_create_simple_port(seq, "Announcements", SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
                                             SND_SEQ_PORT_TYPE_APPLICATION);
    if (state->port < 0)
        return state->port;
    if (int err = snd_seq_connect_from(seq, state->port, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE); err < 0)
        return err;
    if (MidiStatus err = state->reader.start(state.get()); err != 0)
        return err;
    out->reset(new AlsaAnnounceWatcher(std::move(state)));
    return 0;
}

AlsaAnnounceWatcher::AlsaAnnounceWatcher(std::unique_ptr<State> state) : state_(std::move(state)) {}

AlsaAnnounceWatcher::~AlsaAnnounceWatcher() = default;

int AlsaAnnounceWatcher::client_id() const
{
    return state_->reader.client_id();
}

bool AlsaAnnounceWatcher::alive() const
{
    return state_->reader.alive();
}

uint64_t AlsaAnnounceWatcher::change_count() const
{
    return state_->changes;
}

bool AlsaAnnounceWatcher::unchanged_since(uint64_t count, bool check_queue) const
{
    const auto quiet = [&] { return state_->reader.alive() && !state_->reading && state_->changes == count; };
    if (!quiet())
        return false;
    if (!check_queue)
        return true;
    // Queued, or not known: either way not known to be unchanged. If the
    // thread read the queue meanwhile, it marked itself reading first.
    return state_->reader.queue_known_empty() && quiet();
}

}  // namespace dialcraft
