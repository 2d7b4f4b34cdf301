// dialcraft-virtual-controller [SERIAL ...]: controllers on the ALSA
// sequencer that dialcraft programs as real ones; see controller_help().
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "base/program_version.h"
#include "virtual_controller/controller_commands.h"
#include "virtual_controller/sequencer_controller.h"
#include "virtual_controller/virtual_knobs.h"

namespace dialcraft {

namespace {

// Whole lines, flushed at once, so a program reading the output through a
// pipe sees each line as soon as it happens.
void print(std::FILE* stream, const std::string& line)
{
    const std::string text = line + "\n";
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

void complain(const std::string& text)
{
    print(stderr, "dialcraft-virtual-controller: " + text);
}

std::string hex(const MidiMessage& message)
{
    std::string text;
    char cell[4];
    for (uint8_t byte : message) {
        std::snprintf(cell, sizeof cell, "%02x", byte);
        if (!text.empty())
            text += ' ';
        text += cell;
    }
    return text;
}

struct Controller {
    SequencerController port;
    VirtualKnobs knobs;
    explicit Controller(const std::string& serial) : knobs(serial) {}
};

class Session {
public:
    explicit Session(std::vector<std::unique_ptr<Controller>> controllers) : controllers_(std::move(controllers)) {}

    // Runs until quit or the end of standard input; returns the exit status.
    int run()
    {
        for (;;) {
            std::vector<pollfd> fds;
            std::vector<size_t> owner;
            for (size_t i = 0; i < controllers_.size(); ++i) {
                for (const pollfd& fd : controllers_[i]->port.poll_descriptors()) {
                    fds.push_back(fd);
                    owner.push_back(i);
                }
            }
            fds.push_back(pollfd{STDIN_FILENO, POLLIN, 0});
            if (poll(fds.data(), fds.size(), -1) < 0) {
                if (errno == EINTR)
                    continue;
                complain("poll failed");
                return 1;
            }
            for (size_t i = 0; i + 1 < fds.size(); ++i)
                if (fds[i].revents & POLLIN)
                    drain(*controllers_[owner[i]]);
            if (fds.back().revents & (POLLIN | POLLHUP | POLLERR)) {
                if (!read_commands())
                    return 0;
            }
        }
    }

private:
    static void drain(Controller& controller)
    {
        controller.port.drain([&controller](const MidiMessage& message) {
            if (auto line = controller.knobs.receive(message, VirtualKnobs::Clock::now()))
                print(stdout, *line);
        });
    }

    // False at the end of input or on quit.
    bool read_commands()
    {
        char chunk[512];
        const ssize_t n = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (n < 0)
            return errno == EINTR || errno == EAGAIN;
        if (n == 0)
            return false;
        pending_.append(chunk, static_cast<size_t>(n));
        for (size_t end; (end = pending_.find('\n')) != std::string::npos;) {
            const std::string line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            if (!handle(line))
                return false;
        }
        return true;
    }

    Controller* find(const std::optional<std::string>& serial)
    {
        if (!serial)
            return controllers_.front().get();
        for (auto& controller : controllers_)
            if (controller->knobs.serial() == *serial)
                return controller.get();
        complain("SERIAL " + *serial + " 不是这里的控制器(is not one of these controllers)");
        return nullptr;
    }

    bool handle(const std::string& line)
    {
        const auto parsed = parse_controller_command(line);
        if (const auto* error = std::get_if<std::string>(&parsed)) {
            complain(*error);
            return true;
        }
        const ControllerCommand& command = std::get<ControllerCommand>(parsed);
        switch (command.kind) {
        case ControllerCommand::Kind::nothing: return true;
        case ControllerCommand::Kind::quit: return false;
        case ControllerCommand::Kind::help:
            std::fputs(std::string(controller_commands_help()).c_str(), stdout);
            std::fflush(stdout);
            return true;
        case ControllerCommand::Kind::table:
            if (!command.serial) {
                for (auto& controller : controllers_)
                    for (const std::string& row : controller->knobs.table())
                        print(stdout, row);
            } else if (Controller* controller = find(command.serial)) {
                for (const std::string& row : controller->knobs.table())
                    print(stdout, row);
            }
            return true;
        case ControllerCommand::Kind::turn: turn(command); return true;
        case ControllerCommand::Kind::sweep: sweep(command); return true;
        }
        return true;
    }

    void turn(const ControllerCommand& command)
    {
        Controller* controller = find(command.serial);
        if (!controller)
            return;
        const auto message = controller->knobs.turn(command.knob, command.value);
        if (const auto* why = std::get_if<std::string>(&message)) {
            complain(controller->knobs.serial() + " " + *why);
            return;
        }
        const MidiMessage& bytes = std::get<MidiMessage>(message);
        if (!controller->port.send(bytes)) {
            complain(controller->port.error());
            return;
        }
        print(stdout, controller->knobs.serial() + " knob " + std::to_string(command.knob) + " 转到(turned to) " +
                          std::to_string(command.value) + ": 已发送(sent) " + hex(bytes));
    }

    void sweep(const ControllerCommand& command)
    {
        Controller* controller = find(command.serial);
        if (!controller)
            return;
        int sent = 0;
        for (; sent < command.count; ++sent) {
            const auto message = controller->knobs.turn(command.knob, sent % 128);
            if (const auto* why = std::get_if<std::string>(&message)) {
                complain(controller->knobs.serial() + " " + *why);
                return;
            }
            if (!controller->port.send_when_room(std::get<MidiMessage>(message))) {
                complain(controller->port.error());
                break;
            }
        }
        print(stdout, controller->knobs.serial() + " knob " + std::to_string(command.knob) +
                          " 扫过(swept): 已发送(sent) " + std::to_string(sent) + "/" + std::to_string(command.count));
    }

    std::vector<std::unique_ptr<Controller>> controllers_;
    std::string pending_;
};

}  // namespace

}  // namespace dialcraft

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (asks_version(argc, argv))
        return std::fputs(version_line("dialcraft-virtual-controller").c_str(), stdout) < 0 ? 1 : 0;
    const auto parsed = parse_controller_arguments(std::vector<std::string>(argv + 1, argv + argc));
    if (const auto* error = std::get_if<std::string>(&parsed)) {
        complain(*error);
        return 2;
    }
    const ControllerArguments& arguments = std::get<ControllerArguments>(parsed);
    if (arguments.help) {
        std::fputs(std::string(controller_help()).c_str(), stdout);
        return 0;
    }

    std::vector<std::unique_ptr<Controller>> controllers;
    for (const std::string& serial : arguments.serials) {
        auto controller = std::make_unique<Controller>(serial);
        if (!controller->port.open(serial)) {
            complain(serial + ": " + controller->port.error());
            return 1;
        }
        print(stdout, serial + ": 就绪(ready), 端口(port) " + controller->port.address() + " \"" +
                          controller->port.port_name() + "\"");
        controllers.push_back(std::move(controller));
    }
    Session session(std::move(controllers));
    return session.run();
}
