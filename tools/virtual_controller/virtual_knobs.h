#pragma once
// What one virtual controller knows: the programming frames it has decoded,
// the knob table they built, and the message a turn of a knob sends.
#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "controller_emulator/knob_programming_decoder.h"
#include "controller_emulator/midi_stream_parser.h"

namespace dialcraft {

class VirtualKnobs {
public:
    using Clock = std::chrono::steady_clock;

    explicit VirtualKnobs(std::string serial);

    // Feeds one message received at `at`. When it completes a programming
    // frame the knob is stored and the line to print comes back:
    // "4AC1CC27 knob 5 = Control Change, channel 2, controller 74; 间隔(gaps) 8.1, 8.0, 8.0, 8.1 ms",
    // the gaps being those between the frame's five messages.
    std::optional<std::string> receive(const MidiMessage& message, Clock::time_point at);

    // One line per programmed knob, in knob order, or one line saying that
    // none has been programmed.
    std::vector<std::string> table() const;

    // The message a turn of `knob` to `value` sends: the knob's type and
    // channel as status byte, its controller number and `value` as the data
    // bytes. Text saying why not when the knob has no such message.
    std::variant<MidiMessage, std::string> turn(int knob, int value) const;

    const std::string& serial() const { return serial_; }

private:
    std::string serial_;
    KnobProgrammingDecoder decoder_;
    std::deque<Clock::time_point> recent_;  // arrival times of the last five messages
    std::map<int, KnobSetting> knobs_;
};

// Eight hexadecimal digits, in upper case ("4ac1cc27" gives "4AC1CC27"); nothing otherwise.
std::optional<std::string> controller_serial(const std::string& text);

}  // namespace dialcraft
