#include "child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

pid_t spawn(const std::vector<std::string>& argv, int in_fd, int out_fd, int err_fd)
{
    std::vector<char*> args;
    for (const std::string& arg : argv)
        args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(in_fd, STDIN_FILENO);
        dup2(out_fd, STDOUT_FILENO);
        dup2(err_fd, STDERR_FILENO);
        execv(args[0], args.data());
        _exit(127);
    }
    return pid;
}

// Appends what `fd` has to `text`; false at its end.
bool drain(int fd, std::string& text)
{
    char chunk[4096];
    for (;;) {
        const ssize_t n = read(fd, chunk, sizeof chunk);
        if (n > 0) {
            text.append(chunk, static_cast<size_t>(n));
            continue;
        }
        if (n == 0)
            return false;
        return errno == EAGAIN || errno == EINTR;
    }
}

int wait_status(pid_t pid, Clock::time_point deadline)
{
    for (;;) {
        int status = 0;
        if (waitpid(pid, &status, WNOHANG) == pid)
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (Clock::now() >= deadline) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

}  // namespace

ProcessResult run_process(const std::vector<std::string>& argv, std::chrono::milliseconds timeout)
{
    ProcessResult result;
    int out[2];
    int err[2];
    if (pipe2(out, O_CLOEXEC) != 0)
        return result;
    if (pipe2(err, O_CLOEXEC) != 0) {
        close(out[0]);
        close(out[1]);
        return result;
    }
    const int null_fd = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const pid_t pid = spawn(argv, null_fd, out[1], err[1]);
    close(null_fd);
    close(out[1]);
    close(err[1]);
    fcntl(out[0], F_SETFL, O_NONBLOCK);
    fcntl(err[0], F_SETFL, O_NONBLOCK);

    const auto deadline = Clock::now() + timeout;
    bool out_open = true;
    bool err_open = true;
    while ((out_open || err_open) && pid > 0 && Clock::now() < deadline) {
        pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
        poll(fds, 2, 50);
        if (out_open)
            out_open = drain(out[0], result.out);
        if (err_open)
            err_open = drain(err[0], result.err);
    }
    if (pid > 0)
        result.status = wait_status(pid, deadline);
    drain(out[0], result.out);
    drain(err[0], result.err);
    close(out[0]);
    close(err[0]);
    return result;
}

InteractiveProcess::~InteractiveProcess()
{
    stop();
}

bool InteractiveProcess::start(const std::vector<std::string>& argv)
{
    // A child that leaves must not take this process with it on the next write.
    std::signal(SIGPIPE, SIG_IGN);
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0)
        return false;
    if (pipe2(out, O_CLOEXEC) != 0) {
        close(in[0]);
        close(in[1]);
        return false;
    }
    pid_ = spawn(argv, in[0], out[1], STDERR_FILENO);
    close(in[0]);
    close(out[1]);
    in_fd_ = in[1];
    out_fd_ = out[0];
    fcntl(out_fd_, F_SETFL, O_NONBLOCK);
    return pid_ > 0;
}

bool InteractiveProcess::write_line(const std::string& line)
{
    if (in_fd_ < 0)
        return false;
    const std::string text = line + "\n";
    return write(in_fd_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void InteractiveProcess::read_available(std::chrono::milliseconds wait)
{
    if (out_fd_ < 0)
        return;
    pollfd fd{out_fd_, POLLIN, 0};
    poll(&fd, 1, static_cast<int>(wait.count()));
    drain(out_fd_, pending_);
    for (size_t end; (end = pending_.find('\n')) != std::string::npos;) {
        lines_.push_back(pending_.substr(0, end));
        pending_.erase(0, end + 1);
    }
}

std::string InteractiveProcess::wait_for_line(const std::string& prefix, std::chrono::milliseconds timeout)
{
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        for (; handed_out_ < lines_.size(); ++handed_out_)
            if (lines_[handed_out_].rfind(prefix, 0) == 0)
                return lines_[handed_out_++];
        if (Clock::now() >= deadline)
            return {};
        read_available(std::chrono::milliseconds(20));
    }
}

const std::vector<std::string>& InteractiveProcess::lines()
{
    read_available(std::chrono::milliseconds(0));
    return lines_;
}

int InteractiveProcess::stop()
{
    if (in_fd_ >= 0) {
        close(in_fd_);
        in_fd_ = -1;
    }
    int status = -1;
    if (pid_ > 0) {
        status = wait_status(pid_, Clock::now() + std::chrono::seconds(2));
        pid_ = -1;
    }
    if (out_fd_ >= 0) {
        read_available(std::chrono::milliseconds(0));
        close(out_fd_);
        out_fd_ = -1;
    }
    return status;
}

int InteractiveProcess::wait_for_exit(std::chrono::milliseconds timeout)
{
    const auto limit = Clock::now() + timeout;
    int status = -1;
    while (pid_ > 0) {
        read_available(std::chrono::milliseconds(20));
        int raw = 0;
        const pid_t done = waitpid(pid_, &raw, WNOHANG);
        if (done == pid_) {
            status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
            pid_ = -1;
        } else if (Clock::now() > limit) {
            kill(pid_, SIGKILL);
            waitpid(pid_, &raw, 0);
            pid_ = -1;
        }
    }
    const int ignored = stop();
    (void)ignored;
    return status;
}
