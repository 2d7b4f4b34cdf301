#include "cli/cli_console.h"

namespace dialcraft {

CliConsole::CliConsole(std::ostream& err, bool verbose)
    : err_(err), verbose_(verbose), previous_(set_console_sink(this))
{
}

CliConsole::~CliConsole()
{
    set_console_sink(previous_);
}

void CliConsole::write(std::string_view text)
{
    if (verbose_)
        error_text(text);
}

void CliConsole::error_text(std::string_view text)
{
    std::lock_guard lock(mutex_);
    err_.write(text.data(), static_cast<std::streamsize>(text.size()));
    err_.flush();
    std::string_view line = text;
    if (!line.empty() && line.back() == '\n')
        line.remove_suffix(1);
    // The progress bar redraws itself with a carriage return: not an error.
    if (!line.empty() && line.front() != '\r')
        last_error_ = std::string(line.substr(line.rfind('\n') == std::string_view::npos ? 0 : line.rfind('\n') + 1));
}

std::string CliConsole::last_error() const
{
    std::lock_guard lock(mutex_);
    return last_error_;
}

}  // namespace dialcraft
