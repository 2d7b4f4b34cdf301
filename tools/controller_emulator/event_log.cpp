#include "controller_emulator/event_log.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace dialcraft {

namespace {
std::string hex_bytes(std::span<const uint8_t> bytes)
{
    std::string text;
    char cell[4];
    for (uint8_t b : bytes) {
        std::snprintf(cell, sizeof cell, "%02x", b);
        if (!text.empty())
            text.push_back(' ');
        text.append(cell);
    }
    return text;
}
}  // namespace

int64_t monotonic_ns()
{
    // libstdc++'s steady clock is CLOCK_MONOTONIC on Linux.
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

EventLog::EventLog(const std::string& path)
{
    if (path.empty() || path == "-") {
        fd_ = STDOUT_FILENO;
        return;
    }
    fd_ = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    owns_fd_ = fd_ >= 0;
}

EventLog::~EventLog()
{
    if (owns_fd_)
        close(fd_);
}

void EventLog::line(const std::string& text)
{
    if (fd_ < 0)
        return;
    std::string whole = text + "\n";
    const char* p = whole.data();
    size_t left = whole.size();
    while (left > 0) {
        ssize_t n = write(fd_, p, left);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        p += n;
        left -= static_cast<size_t>(n);
    }
}

void EventLog::ready(std::string_view device)
{
    line("ready " + std::string(device));
}

void EventLog::received(int64_t ns, std::span<const uint8_t> bytes)
{
    line("msg " + std::to_string(ns) + " " + hex_bytes(bytes));
}

void EventLog::programmed(const KnobSetting& s)
{
    line(knob_setting_text(s));
}

void EventLog::sent(int64_t ns, std::span<const uint8_t> bytes)
{
    line("sent " + std::to_string(ns) + " " + hex_bytes(bytes));
}

void EventLog::gone(std::string_view reason)
{
    line("gone " + std::string(reason));
}

void EventLog::error(std::string_view text)
{
    line("error " + std::string(text));
}

}  // namespace dialcraft
