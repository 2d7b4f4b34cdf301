#pragma once
// Programs of the application run as child processes inside the test VM, as
// a user runs them: one to completion with its output caught, or one kept
// running with a pipe to its standard input and its output read line by line.
#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

struct ProcessResult {
    int status = -1;  // the exit status; -1 when killed or not started
    std::string out;
    std::string err;
};

// Runs `argv` to completion (killed after `timeout`).
ProcessResult run_process(const std::vector<std::string>& argv, std::chrono::milliseconds timeout);

class InteractiveProcess {
public:
    InteractiveProcess() = default;
    ~InteractiveProcess();
    InteractiveProcess(const InteractiveProcess&) = delete;
    InteractiveProcess& operator=(const InteractiveProcess&) = delete;

    bool start(const std::vector<std::string>& argv);
    // Writes one line (a line feed is added) to its standard input.
    bool write_line(const std::string& line);
    // Waits for a line of standard output beginning with `prefix` after the
    // last line this returned (the lines in between are passed over); returns
    // it, or "" after `timeout`.
    std::string wait_for_line(const std::string& prefix, std::chrono::milliseconds timeout);
    // Every line of standard output so far.
    const std::vector<std::string>& lines();
    // Closes its standard input (the end of input ends it), then kills it if
    // it does not leave in time. Returns its exit status, -1 when killed.
    int stop();
    // Waits for it to end by itself, its standard input left open, reading
    // its output meanwhile; killed after `timeout`. Returns its exit status,
    // -1 when killed.
    int wait_for_exit(std::chrono::milliseconds timeout);

private:
    void read_available(std::chrono::milliseconds wait);

    pid_t pid_ = -1;
    int in_fd_ = -1;
    int out_fd_ = -1;
    std::string pending_;
    std::vector<std::string> lines_;
    size_t handed_out_ = 0;
};
