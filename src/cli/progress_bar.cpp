#include "cli/progress_bar.h"

#include "cli/cli_console.h"

namespace dialcraft {

namespace {
constexpr int bar_width = 20;
}  // namespace

std::string progress_text(int done, int total, int knob)
{
    // Appended piece by piece: GCC 12 at -O3 warns (-Wrestrict) on
    // `"literal" + std::string&&` chains, a false positive that would stop a
    // build with warnings as errors.
    const int filled = total > 0 ? done * bar_width / total : bar_width;
    std::string text = "[";
    text.append(static_cast<size_t>(filled), '#');
    text.append(static_cast<size_t>(bar_width - filled), '.');
    text += "] ";
    text += std::to_string(done);
    text += '/';
    text += std::to_string(total);
    text += " 旋钮(knob) ";
    text += std::to_string(knob);
    return text;
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

}  // namespace dialcraft
