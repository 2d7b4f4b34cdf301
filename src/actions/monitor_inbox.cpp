#include "actions/monitor_inbox.h"

#include <cstring>

#include "midi/family_presence.h"

namespace dialcraft {

MonitorInbox::MonitorInbox(std::function<void()> wake) : wake_(std::move(wake)) {}

MidiStatus MonitorInbox::start(MidiHost& host)
{
    stop();
    failed_ = false;
    return host.listen(this, &listening_);
}

void MonitorInbox::stop()
{
    listening_.reset();
}

bool MonitorInbox::wants(const char* source_name)
{
    return source_name && is_family_serial(source_name);
}

void MonitorInbox::heard(const char* source_name, const MidiMessage& message)
{
    HeardMessage heard;
    heard.at = clock_ ? clock_() : std::chrono::system_clock::now();
    std::memcpy(heard.serial, source_name, 8);
    heard.message = message;
    bool was_empty = false;
    {
        std::lock_guard lock(mutex_);
        was_empty = pending_.empty();
        if (pending_.size() == capacity) {
            pending_.pop_front();
            ++overflowed_;
        }
        pending_.push_back(heard);
        ++received_;
    }
    arrived_.notify_all();
    if (was_empty && wake_)
        wake_();
}

void MonitorInbox::lost()
{
    ++service_losses_;
}

void MonitorInbox::stopped()
{
    failed_ = true;
    arrived_.notify_all();
    if (wake_)
        wake_();
}

void MonitorInbox::take(std::vector<HeardMessage>& out)
{
    out.clear();
    std::lock_guard lock(mutex_);
    out.assign(pending_.begin(), pending_.end());
    pending_.clear();
}

bool MonitorInbox::wait_until(std::chrono::steady_clock::time_point deadline)
{
    std::unique_lock lock(mutex_);
    return arrived_.wait_until(lock, deadline, [&] { return !pending_.empty() || failed_; }) && !pending_.empty();
}

}  // namespace dialcraft
