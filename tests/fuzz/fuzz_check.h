#pragma once
// What every fuzz target shares: a broken property stops the run with its
// description (libFuzzer then keeps the input as a crash), and the program's
// printed lines are collected instead of flooding the fuzzer's output.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/console.h"

using namespace dialcraft;

inline void fuzz_require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "fuzz property broken: %s\n", property);
    std::fflush(stderr);
    std::abort();
}

// Keeps what was printed since the last clear().
class CollectedLines final : public ConsoleSink {
public:
    void write(std::string_view text) override { text_.append(text); }
    void clear() { text_.clear(); }
    const std::string& text() const { return text_; }
    bool has_line(std::string_view line) const
    {
        const std::string whole = std::string(line) + '\n';
        return text_.starts_with(whole) || text_.find('\n' + whole) != std::string::npos;
    }

private:
    std::string text_;
};
