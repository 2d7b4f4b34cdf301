#include "emulated_controller.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

namespace {
bool starts_with(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}
}  // namespace

EmulatedController::EmulatedController(std::string emulator_path, std::string log_path)
    : emulator_path_(std::move(emulator_path)), log_path_(std::move(log_path))
{
}

EmulatedController::~EmulatedController()
{
    stop();
}

bool EmulatedController::start(const std::string& device, std::chrono::milliseconds timeout)
{
    // An emulator that left after an unplug must not take this process with
    // it when the next command finds its pipe closed.
    std::signal(SIGPIPE, SIG_IGN);
    unlink(log_path_.c_str());
    int pipe_fds[2];
    if (pipe2(pipe_fds, O_CLOEXEC) != 0) {
        error_ = std::string("pipe: ") + std::strerror(errno);
        return false;
    }
    pid_t pid = fork();
    if (pid < 0) {
        error_ = std::string("fork: ") + std::strerror(errno);
        close(pipe_fds[0]);
        close(pipe_fds[1]);
        return false;
    }
    if (pid == 0) {
        dup2(pipe_fds[0], STDIN_FILENO);
        execl(emulator_path_.c_str(), emulator_path_.c_str(), device.c_str(), log_path_.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    close(pipe_fds[0]);
    pid_ = pid;
    command_fd_ = pipe_fds[1];

    auto deadline = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < deadline) {
        for (const std::string& line : log_lines()) {
            if (starts_with(line, "ready "))
                return true;
            if (starts_with(line, "error ")) {
                error_ = "emulator: " + line;
                return false;
            }
        }
        int status = 0;
        if (waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            error_ = "emulator ended before it was ready";
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    error_ = "emulator not ready in time on " + device;
    return false;
}

bool EmulatedController::send(const std::string& hex_bytes)
{
    if (command_fd_ < 0)
        return false;
    std::string command = "send " + hex_bytes + "\n";
    return write(command_fd_, command.data(), command.size()) == static_cast<ssize_t>(command.size());
}

bool EmulatedController::wait_for_exit(std::chrono::milliseconds timeout)
{
    if (pid_ < 0)
        return true;
    auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        int status = 0;
        pid_t r = waitpid(pid_, &status, WNOHANG);
        if (r == pid_ || (r < 0 && errno == ECHILD)) {
            pid_ = -1;
            return true;
        }
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void EmulatedController::stop()
{
    if (command_fd_ >= 0) {
        static const char quit[] = "quit\n";
        ssize_t ignored = write(command_fd_, quit, sizeof quit - 1);
        (void)ignored;
        close(command_fd_);
        command_fd_ = -1;
    }
    if (pid_ >= 0 && !wait_for_exit(std::chrono::seconds(2))) {
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
    }
}

bool EmulatedController::wait_for_line(const std::string& prefix, std::chrono::milliseconds timeout) const
{
    auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        for (const std::string& line : log_lines())
            if (starts_with(line, prefix))
                return true;
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::vector<std::string> EmulatedController::log_lines() const
{
    std::vector<std::string> lines;
    std::ifstream in(log_path_);
    std::string line;
    // Only whole lines: the emulator writes each line with one write.
    while (std::getline(in, line))
        if (!in.eof())
            lines.push_back(line);
    return lines;
}

std::vector<ReceivedMessage> EmulatedController::received() const
{
    std::vector<ReceivedMessage> messages;
    for (const std::string& line : log_lines()) {
        if (!starts_with(line, "msg "))
            continue;
        std::istringstream in(line.substr(4));
        ReceivedMessage message;
        in >> message.monotonic_ns;
        std::string byte;
        while (in >> byte)
            message.bytes.push_back(static_cast<uint8_t>(std::strtoul(byte.c_str(), nullptr, 16)));
        messages.push_back(message);
    }
    return messages;
}

std::vector<std::string> EmulatedController::programmed() const
{
    std::vector<std::string> frames;
    for (const std::string& line : log_lines())
        if (starts_with(line, "knob "))
            frames.push_back(line);
    return frames;
}
