#include "helper_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>

HelperProcess::HelperProcess(std::vector<std::string> argv) : argv_(std::move(argv)) {}

HelperProcess::~HelperProcess()
{
    if (pid_ >= 0)
        finish(std::chrono::seconds(2));
    // Still running: finish() clears pid_ once the child has been reaped.
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
    }
    if (output_fd_ >= 0)
        close(output_fd_);
}

bool HelperProcess::start()
{
    // A helper that left must not take this process with it on a write.
    std::signal(SIGPIPE, SIG_IGN);
    int to_child[2];
    int from_child[2];
    if (pipe2(to_child, O_CLOEXEC) != 0 || pipe2(from_child, O_CLOEXEC) != 0) {
        error_ = std::string("pipe: ") + std::strerror(errno);
        return false;
    }
    std::vector<char*> args;
    for (std::string& a : argv_)
        args.push_back(a.data());
    args.push_back(nullptr);
    const pid_t pid = fork();
    if (pid < 0) {
        error_ = std::string("fork: ") + std::strerror(errno);
        return false;
    }
    if (pid == 0) {
        dup2(to_child[0], STDIN_FILENO);
        dup2(from_child[1], STDOUT_FILENO);
        execv(args[0], args.data());
        _exit(127);
    }
    close(to_child[0]);
    close(from_child[1]);
    pid_ = pid;
    input_fd_ = to_child[1];
    output_fd_ = from_child[0];
    return true;
}

bool HelperProcess::read_line(std::string* line, std::chrono::steady_clock::time_point deadline)
{
    for (;;) {
        if (size_t end = pending_.find('\n'); end != std::string::npos) {
            *line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return true;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline -
                                                                                std::chrono::steady_clock::now());
        if (left.count() <= 0 || output_fd_ < 0) {
            error_ = argv_[0] + ": no answer in time";
            return false;
        }
        pollfd fd{output_fd_, POLLIN, 0};
        if (poll(&fd, 1, static_cast<int>(left.count())) < 0 && errno != EINTR) {
            error_ = std::string("poll: ") + std::strerror(errno);
            return false;
        }
        if (!(fd.revents & (POLLIN | POLLHUP)))
            continue;
        char buffer[4096];
        const ssize_t n = read(output_fd_, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            error_ = argv_[0] + ": output ended";
            return false;
        }
        pending_.append(buffer, static_cast<size_t>(n));
    }
}

bool HelperProcess::ask(const std::string& command, std::string* reply, std::chrono::milliseconds timeout)
{
    const std::string line = command + "\n";
    if (input_fd_ < 0 || write(input_fd_, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        error_ = argv_[0] + ": cannot send \"" + command + "\"";
        return false;
    }
    return read_line(reply, std::chrono::steady_clock::now() + timeout);
}

bool HelperProcess::read_until(const std::string& last, std::vector<std::string>* lines,
                               std::chrono::milliseconds timeout)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::string line;
    while (read_line(&line, deadline)) {
        lines->push_back(line);
        if (line == last)
            return true;
    }
    return false;
}

bool HelperProcess::wait(std::chrono::milliseconds timeout, int* status)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        const pid_t r = waitpid(pid_, status, WNOHANG);
        if (r == pid_)
            return true;
        if (r < 0 || std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

bool HelperProcess::finish(std::chrono::milliseconds timeout)
{
    if (input_fd_ >= 0) {
        close(input_fd_);
        input_fd_ = -1;
    }
    if (pid_ < 0)
        return false;
    int status = 0;
    if (!wait(timeout, &status)) {
        error_ = argv_[0] + ": did not end in time";
        return false;
    }
    pid_ = -1;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        error_ = argv_[0] + ": ended with status " + std::to_string(status);
        return false;
    }
    return true;
}
