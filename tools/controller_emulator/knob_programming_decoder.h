#pragma once
// The controller's side of knob programming: it watches the messages it
// receives for the five-message frame
//   F8; 9n cc kk; 8n cc kk; Tn cc kk; F8
// and, when a frame is complete, reports that knob kk now sends type T on
// channel n + 1 with controller cc. With type F the fourth message is a
// single F8, so that frame is F8; 9n cc kk; 8n cc kk; F8; F8.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "controller_emulator/midi_stream_parser.h"

namespace dialcraft {

struct KnobSetting {
    int knob = 0;
    uint8_t type_nibble = 0;  // 0x8, 0x9, 0xB, 0xE or 0xF
    int channel = 0;          // 1 to 16
    int controller = 0;       // 0 to 127

    bool operator==(const KnobSetting&) const = default;
};

// "Note On", "Note Off", "Control Change", "Bend Change", "System Change",
// or "Unknown" for any other nibble.
std::string_view knob_type_name(uint8_t type_nibble);

// "knob 5 = Control Change, channel 2, controller 74"
std::string knob_setting_text(const KnobSetting& setting);

class KnobProgrammingDecoder {
public:
    // Feeds one received message; returns the setting a frame completes.
    // A message that does not fit the frame abandons it; an F8 then starts
    // a new one.
    std::optional<KnobSetting> push(const MidiMessage& message);

private:
    void restart(const MidiMessage& message);

    int step_ = 0;  // messages of the current frame matched so far
    uint8_t channel_nibble_ = 0;
    uint8_t controller_ = 0;
    uint8_t knob_ = 0;
    uint8_t type_nibble_ = 0;
};

}  // namespace dialcraft
