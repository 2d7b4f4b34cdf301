#include "midi/midi_change_watch.h"

#include <algorithm>

namespace dialcraft {

MidiChangeWatch& MidiChangeWatch::operator=(MidiChangeWatch&& other) noexcept
{
    if (this != &other) {
        reset();
        end_ = std::exchange(other.end_, nullptr);
    }
    return *this;
}

void MidiChangeWatch::reset()
{
    if (auto end = std::exchange(end_, nullptr))
        end();
}

uint64_t MidiChangeSubscribers::add(MidiChangeProc proc, void* context)
{
    const std::lock_guard lock(mutex_);
    subscribers_.push_back(Subscriber{++last_id_, proc, context});
    return last_id_;
}

void MidiChangeSubscribers::remove(uint64_t id)
{
    const std::lock_guard lock(mutex_);
    subscribers_.erase(std::remove_if(subscribers_.begin(), subscribers_.end(),
                                      [id](const Subscriber& s) { return s.id == id; }),
                       subscribers_.end());
}

bool MidiChangeSubscribers::empty() const
{
    const std::lock_guard lock(mutex_);
    return subscribers_.empty();
}

void MidiChangeSubscribers::tell()
{
    const std::lock_guard lock(mutex_);
    for (const Subscriber& s : subscribers_)
        s.proc(s.context);
}

}  // namespace dialcraft
