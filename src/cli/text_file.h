#pragma once
// Reading a configuration text file for apply and import, and warning about
// what the import's rules do to its lines.
#include <QString>

#include <string>

namespace dialcraft {

class CliConsole;

// The file's text as the window's import reads it: UTF-8 with invalid
// sequences replaced. Throws UsageError naming FILE when it cannot be read.
QString read_text_file(const std::string& path);

// Writes a warning to the error stream when the import's cutting moves
// slots: dropped empty lines before later slots (every knob after them
// shifts), and CR LF line ends, which do not cut at all.
void warn_about_cutting(CliConsole& console, const std::string& command, const QString& text);

}  // namespace dialcraft
