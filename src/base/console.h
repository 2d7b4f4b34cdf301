#pragma once
// Diagnostic lines on standard output. Every line of the program, from the
// MIDI link, the model and the actions alike, goes through one sink: each
// call formats the whole text first and hands it over in one write, so lines
// from the MIDI receive thread never tear lines of the user-interface thread.
#include <string_view>

namespace dialcraft {

// Where printed text goes. The default writes to standard output and
// flushes; tests and the command-line tool put their own in its place.
class ConsoleSink {
public:
    virtual ~ConsoleSink() = default;
    // One call per printed text (normally one whole line); may be called
    // from any thread.
    virtual void write(std::string_view text) = 0;
};

// Makes `sink` the console; nullptr restores standard output. Returns the
// sink that was in place before (nullptr for standard output). The caller
// keeps `sink` alive until it is replaced.
ConsoleSink* set_console_sink(ConsoleSink* sink);

void console_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));
// Writes `text` followed by a line feed.
void console_line(std::string_view text);

}  // namespace dialcraft
