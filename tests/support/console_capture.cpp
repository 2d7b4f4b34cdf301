#include "console_capture.h"

#include <algorithm>

namespace dialcraft {

ConsoleCapture::ConsoleCapture() : previous_(set_console_sink(this)) {}

ConsoleCapture::~ConsoleCapture()
{
    finish();
}

void ConsoleCapture::write(std::string_view text)
{
    {
        std::lock_guard lock(mutex_);
        text_.append(text);
    }
    printed_.notify_all();
}

std::string ConsoleCapture::text() const
{
    std::lock_guard lock(mutex_);
    return text_;
}

std::string ConsoleCapture::finish()
{
    if (active_) {
        active_ = false;
        set_console_sink(previous_);
    }
    return text();
}

QStringList ConsoleCapture::finishLines()
{
    QString all = QString::fromStdString(finish());
    if (all.endsWith(u'\n'))
        all.chop(1);
    return all.isEmpty() ? QStringList{} : all.split(u'\n');
}

bool ConsoleCapture::wait_for_line(const std::string& line, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return printed_.wait_for(lock, timeout, [&] { return count_lines(text_, line) > 0; });
}

std::vector<std::string> printed_lines(const std::string& text)
{
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end + 1 - start));
        start = end + 1;
    }
    return lines;
}

int count_lines(const std::string& text, const std::string& line)
{
    const std::vector<std::string> lines = printed_lines(text);
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

}  // namespace dialcraft
