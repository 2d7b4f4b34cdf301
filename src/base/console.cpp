#include "base/console.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace dialcraft {

namespace {

std::atomic<ConsoleSink*> current_sink{nullptr};

void write_text(std::string_view text)
{
    if (ConsoleSink* sink = current_sink.load(std::memory_order_acquire)) {
        sink->write(text);
        return;
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

}  // namespace

ConsoleSink* set_console_sink(ConsoleSink* sink)
{
    std::fflush(stdout);
    return current_sink.exchange(sink, std::memory_order_acq_rel);
}

void console_printf(const char* format, ...)
{
    char buffer[512];
    va_list args;
    va_start(args, format);
    int n = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (n < 0)
        return;
    if (static_cast<size_t>(n) < sizeof buffer) {
        write_text(std::string_view(buffer, static_cast<size_t>(n)));
        return;
    }
    std::string big(static_cast<size_t>(n) + 1, '\0');
    va_start(args, format);
    std::vsnprintf(big.data(), big.size(), format, args);
    va_end(args);
    write_text(std::string_view(big.data(), static_cast<size_t>(n)));
}

void console_line(std::string_view text)
{
    std::string line;
    line.reserve(text.size() + 1);
    line.append(text);
    line.push_back('\n');
    write_text(line);
}

}  // namespace dialcraft
