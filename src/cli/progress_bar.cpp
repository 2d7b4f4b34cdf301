#include "cli/progress_bar.h"

#include "cli/cli_console.h"

namespace {
constexpr int bar_width = 20;
}  // namespace

std::string progress_text(int done, int total, int knob)
{
    const int filled = total > 0 ? done * bar_width / total : bar_width;
    return "[" + std::string(static_cast<size_t>(filled), '#') +
           std::string(static_cast<size_t>(bar_width - filled), '.') + "] " + std::to_string(done) + "/" +
           std::to_string(total) + " 旋钮(knob) " + std::to_string(knob);
}

ProgressBar::ProgressBar(CliConsole& console, int total, bool shown) : console_(console), total_(total), shown_(shown)
{
}

ProgressBar::~ProgressBar()
{
    hide();
}

void ProgressBar::show(int done, int knob)
{
    if (!shown_)
        return;
    console_.error_text("\r\033[K" + progress_text(done, total_, knob));
    visible_ = true;
}

void ProgressBar::hide()
{
    if (!visible_)
        return;
    console_.error_text("\r\033[K");
    visible_ = false;
}
