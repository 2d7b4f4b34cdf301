#pragma once
// Catches what the code under test prints on standard output (file
// descriptor 1, including lines printed from the MIDI receive thread) in a
// file, so that the exact lines can be checked.
#include <chrono>
#include <string>
#include <vector>

class StdoutCapture {
public:
    // Redirects standard output to `path` until finish().
    explicit StdoutCapture(std::string path);
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

    bool ok() const { return saved_fd_ >= 0; }
    // Everything printed so far.
    std::string text() const;
    // Waits until `line` has been printed as a whole line.
    bool wait_for_line(const std::string& line, std::chrono::milliseconds timeout) const;
    // Restores standard output and returns everything printed.
    std::string finish();

private:
    std::string path_;
    int saved_fd_ = -1;
};

// Splits printed text into lines, each keeping its terminator ("\r\n" or
// "\n"); a last line without terminator is kept as it is.
std::vector<std::string> printed_lines(const std::string& text);
// How often `line` (terminator included) was printed as a whole line.
int count_lines(const std::string& text, const std::string& line);
