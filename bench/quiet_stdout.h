#pragma once
// Sends standard output to /dev/null while a benchmark runs, so the timings do
// not depend on the terminal; the benchmark's own report still goes out.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

class QuietStdout {
public:
    QuietStdout()
    {
        std::fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    ~QuietStdout()
    {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved_;
};
