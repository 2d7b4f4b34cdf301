// Emulated knob controller, run on the device side of a USB gadget.
//
//   controller_emulator <rawmidi device> [<event log>]
//
// Records every message the host sends, timestamped with the monotonic clock,
// and decodes knob programming frames (see event_log.h for the record). Reads
// commands on standard input, one per line:
//   send <hex bytes>   sends the bytes to the host, as a turned knob would
//   quit               ends the emulator (so does the end of input)
// Ends by itself, after logging "gone", when the device disappears (unplug).
#include <poll.h>
#include <unistd.h>

#include <alsa/asoundlib.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "controller_emulator/event_log.h"
#include "controller_emulator/knob_programming_decoder.h"
#include "controller_emulator/midi_stream_parser.h"
#include "controller_emulator/rawmidi_port.h"

namespace dialcraft {

namespace {

// Parses "b0 4a 40" into bytes; false on anything that is not a byte in hex.
bool parse_hex_bytes(const std::string& text, std::vector<uint8_t>& bytes)
{
    std::istringstream in(text);
    std::string word;
    while (in >> word) {
        char* end = nullptr;
        unsigned long value = std::strtoul(word.c_str(), &end, 16);
        if (end == word.c_str() || *end != '\0' || value > 0xFF)
            return false;
        bytes.push_back(static_cast<uint8_t>(value));
    }
    return !bytes.empty();
}

class Emulator {
public:
    Emulator(RawMidiPort& port, EventLog& log) : port_(port), log_(log) {}

    // Runs until quit, end of input or loss of the device; returns the exit status.
    int run()
    {
        std::vector<pollfd> midi_fds = port_.poll_descriptors();
        if (midi_fds.empty()) {
            log_.error(port_.error().empty() ? "no poll descriptors" : port_.error());
            return 1;
        }
        for (;;) {
            std::vector<pollfd> fds = midi_fds;
            fds.push_back(pollfd{STDIN_FILENO, POLLIN, 0});
            int n = poll(fds.data(), fds.size(), -1);
            if (n < 0) {
                if (errno == EINTR)
                    continue;
                log_.error("poll failed");
                return 1;
            }
            bool broken = false;
            bool readable = port_.readable(std::span(fds.data(), midi_fds.size()), broken);
            if (readable && !drain_input())
                return 0;
            if (broken) {
                log_.gone("device error or hang-up");
                return 0;
            }
            const pollfd& command_fd = fds.back();
            if (command_fd.revents & (POLLIN | POLLHUP)) {
                if (!handle_commands())
                    return 0;
            }
        }
    }

private:
    // Reads all pending input; false when the device is gone.
    bool drain_input()
    {
        std::array<uint8_t, 256> buffer{};
        for (;;) {
            long n = port_.read(buffer);
            int64_t now = monotonic_ns();
            if (n == 0)
                return true;
            if (n < 0) {
                log_.gone(snd_strerror(static_cast<int>(n)));
                return false;
            }
            for (long i = 0; i < n; ++i) {
                std::optional<MidiMessage> message = parser_.push(buffer[static_cast<size_t>(i)]);
                if (!message)
                    continue;
                log_.received(now, *message);
                if (std::optional<KnobSetting> setting = decoder_.push(*message))
                    log_.programmed(*setting);
            }
        }
    }

    // Handles the complete command lines on standard input; false to stop.
    bool handle_commands()
    {
        char chunk[256];
        ssize_t n = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (n <= 0)
            return false;
        pending_commands_.append(chunk, static_cast<size_t>(n));
        size_t eol;
        while ((eol = pending_commands_.find('\n')) != std::string::npos) {
            std::string command = pending_commands_.substr(0, eol);
            pending_commands_.erase(0, eol + 1);
            if (command == "quit")
                return false;
            if (command.rfind("send ", 0) == 0) {
                std::vector<uint8_t> bytes;
                if (!parse_hex_bytes(command.substr(5), bytes)) {
                    log_.error("bad send command: " + command);
                    continue;
                }
                int err = port_.write(bytes);
                if (err < 0)
                    log_.error(std::string("send failed: ") + snd_strerror(err));
                else
                    log_.sent(monotonic_ns(), bytes);
                continue;
            }
            log_.error("unknown command: " + command);
        }
        return true;
    }

    RawMidiPort& port_;
    EventLog& log_;
    MidiStreamParser parser_;
    KnobProgrammingDecoder decoder_;
    std::string pending_commands_;
};

}  // namespace

}  // namespace dialcraft

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: %s <rawmidi device> [<event log>]\n", argv[0]);
        return 2;
    }
    EventLog log(argc == 3 ? argv[2] : "-");
    if (!log.ok()) {
        std::fprintf(stderr, "controller_emulator: cannot open the event log %s\n", argv[2]);
        return 2;
    }
    RawMidiPort port;
    if (!port.open(argv[1])) {
        log.error(port.error());
        return 1;
    }
    log.ready(argv[1]);
    Emulator emulator(port, log);
    return emulator.run();
}
