#pragma once
// Watching a MIDI service for changes: the callback a watcher gives, the
// token that keeps one watch going, and the list of watchers a host tells.
// Any number of watchers may watch one host at the same time.
#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace dialcraft {

// Called, on any thread, after clients, ports or endpoints may have come,
// gone or changed. It must not call back into the host: it only says "look
// again".
using MidiChangeProc = void (*)(void* context);

// One watch, kept going as long as the token lives. Ending it (reset() or
// the destructor) returns once its callback is no longer running, and the
// callback is never called again. A watch must end before its host goes.
class MidiChangeWatch {
public:
    MidiChangeWatch() = default;
    // What the host does to end the watch; called once.
    explicit MidiChangeWatch(std::function<void()> end) : end_(std::move(end)) {}
    ~MidiChangeWatch() { reset(); }
    MidiChangeWatch(MidiChangeWatch&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    // Ends this watch first, then takes over the other one.
    MidiChangeWatch& operator=(MidiChangeWatch&& other) noexcept;
    MidiChangeWatch(const MidiChangeWatch&) = delete;
    MidiChangeWatch& operator=(const MidiChangeWatch&) = delete;

    void reset();
    bool active() const { return static_cast<bool>(end_); }

private:
    std::function<void()> end_;
};

// The watchers of one host. Hosts tell it of every change, from any thread;
// a watcher removed is no longer being told by the time remove() returns.
class MidiChangeSubscribers {
public:
    // Adds a watcher; returns its id, which is never 0.
    uint64_t add(MidiChangeProc proc, void* context);
    // Not from inside a callback: it waits for the callbacks being told.
    void remove(uint64_t id);
    bool empty() const;
    // Calls every watcher once, in the order they were added.
    void tell();

private:
    struct Subscriber {
        uint64_t id;
        MidiChangeProc proc;
        void* context;
    };
    // Held while telling, so that remove() waits for a call in flight.
    mutable std::mutex mutex_;
    std::vector<Subscriber> subscribers_;
    uint64_t last_id_ = 0;
};

}  // namespace dialcraft
