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
}

}  // namespace dialcraft
