#pragma once
// Catches every line the program prints, for exact comparison in tests. It
// takes the place of the console's sink while it lives, so it sees the lines
// of every layer, including those printed from the MIDI receive thread, and
// nothing of the test framework's own output.
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "base/console.h"

namespace dialcraft {

class ConsoleCapture final : public ConsoleSink {
public:
    ConsoleCapture();
    ~ConsoleCapture() override;
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    void write(std::string_view text) override;

    // Everything printed so far; the capture goes on.
    std::string text() const;
    // Stops catching (the previous sink is back) and returns everything printed.
    std::string finish();
    // As finish(), split at line feeds without them; a final line feed ends
    // the last line, and nothing printed gives no line.
    QStringList finishLines();
    // Waits until `line` (with its terminator) has been printed as a whole line.
    bool wait_for_line(const std::string& line, std::chrono::milliseconds timeout) const;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable printed_;
    std::string text_;
    ConsoleSink* previous_ = nullptr;
    bool active_ = true;
};

// Splits printed text into lines, each keeping its terminator ("\r\n" or
// "\n"); a last line without terminator is kept as it is.
std::vector<std::string> printed_lines(const std::string& text);
// How often `line` (terminator included) was printed as a whole line.
int count_lines(const std::string& text, const std::string& line);

}  // namespace dialcraft
