#pragma once
// A helper program of the test bed run as a child process: commands go to
// its standard input one line each, and its standard output is read back a
// line at a time. Used for the crowd of other sequencer clients and for the
// reference sender.
#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

class HelperProcess {
public:
    explicit HelperProcess(std::vector<std::string> argv);
    // Closes its input and waits briefly for it to leave, then kills it.
    ~HelperProcess();
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    // False, with the reason in error(), when it cannot be started.
    bool start();
    // Sends `command` and waits for the next line of output.
    bool ask(const std::string& command, std::string* reply, std::chrono::milliseconds timeout);
    // Collects output lines until one equals `last` (which is included).
    bool read_until(const std::string& last, std::vector<std::string>* lines, std::chrono::milliseconds timeout);
    // Closes its input and waits for it to end with status 0.
    bool finish(std::chrono::milliseconds timeout);

    const std::string& error() const { return error_; }

private:
    bool read_line(std::string* line, std::chrono::steady_clock::time_point deadline);
    bool wait(std::chrono::milliseconds timeout, int* status);

    std::vector<std::string> argv_;
    pid_t pid_ = -1;
    int input_fd_ = -1;
    int output_fd_ = -1;
    std::string pending_;
    std::string error_;
};
