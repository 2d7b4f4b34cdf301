#pragma once
// Diagnostic lines on standard output. Each call formats the whole line first
// and writes it with one call, so lines from the MIDI receive thread never
// tear lines of the user-interface thread.
#include <string_view>

void console_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));
// Writes `text` followed by a line feed.
void console_line(std::string_view text);
