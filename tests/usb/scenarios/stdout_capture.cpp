#include "stdout_capture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

StdoutCapture::StdoutCapture(std::string path) : path_(std::move(path))
{
    std::fflush(stdout);
    int fd = open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    saved_fd_ = dup(STDOUT_FILENO);
    if (saved_fd_ < 0 || dup2(fd, STDOUT_FILENO) < 0) {
        if (saved_fd_ >= 0)
            close(saved_fd_);
        saved_fd_ = -1;
    }
    close(fd);
}

StdoutCapture::~StdoutCapture()
{
    finish();
}

std::string StdoutCapture::text() const
{
    std::fflush(stdout);
    std::ifstream in(path_, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

bool StdoutCapture::wait_for_line(const std::string& line, std::chrono::milliseconds timeout) const
{
    auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (count_lines(text(), line) > 0)
            return true;
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::string StdoutCapture::finish()
{
    std::string all = text();
    if (saved_fd_ >= 0) {
        std::fflush(stdout);
        dup2(saved_fd_, STDOUT_FILENO);
        close(saved_fd_);
        saved_fd_ = -1;
    }
    return all;
}

std::vector<std::string> printed_lines(const std::string& text)
{
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
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
    int count = 0;
    for (const std::string& l : printed_lines(text))
        if (l == line)
            ++count;
    return count;
}
