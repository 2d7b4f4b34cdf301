#pragma once
// Where the tool's own error output and the program's diagnostic lines go
// while a command runs. Standard output carries only results, so the
// console's lines (MIDI link, model, set action) never reach it: they are
// dropped, or with --verbose written to the error stream.
#include <mutex>
#include <ostream>
#include <string_view>

#include "base/console.h"

namespace dialcraft {

class CliConsole final : public ConsoleSink {
public:
    // Takes the console's place until destroyed.
    CliConsole(std::ostream& err, bool verbose);
    ~CliConsole() override;
    CliConsole(const CliConsole&) = delete;
    CliConsole& operator=(const CliConsole&) = delete;

    // A console line; may come from the MIDI receive thread.
    void write(std::string_view text) override;
    // Text of the tool itself for the error stream (warnings, errors, the
    // progress bar), under the same lock so console lines never cut into it.
    void error_text(std::string_view text);
    // The last line of the tool's own error text (without its line feed),
    // for --json to report a failure on standard output too.
    std::string last_error() const;

    bool verbose() const { return verbose_; }

private:
    mutable std::mutex mutex_;
    std::ostream& err_;
    std::string last_error_;
    bool verbose_;
    ConsoleSink* previous_;
};

}  // namespace dialcraft
