#include "midi/console.h"

#include <cstdarg>
#include <cstdio>
#include <string>

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
        std::fwrite(buffer, 1, static_cast<size_t>(n), stdout);
    } else {
        std::string big(static_cast<size_t>(n) + 1, '\0');
        va_start(args, format);
        std::vsnprintf(big.data(), big.size(), format, args);
        va_end(args);
        std::fwrite(big.data(), 1, static_cast<size_t>(n), stdout);
    }
    std::fflush(stdout);
}

void console_line(std::string_view text)
{
    std::string line;
    line.reserve(text.size() + 1);
    line.append(text);
    line.push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}
