#pragma once
// The progress of `apply` on the error stream, redrawn in place. It is drawn
// only when that stream is a terminal, and is hidden before a result line is
// written to standard output so the two never mix on one screen line.
#include <string>

namespace dialcraft {

class CliConsole;

class ProgressBar {
public:
    ProgressBar(CliConsole& console, int total, bool shown);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // "[#######.............] 3/8 旋钮(knob) 12"
    void show(int done, int knob);
    void hide();

private:
    CliConsole& console_;
    int total_;
    bool shown_;
    bool visible_ = false;
};

// The bar's text without the carriage return.
std::string progress_text(int done, int total, int knob);

}  // namespace dialcraft
