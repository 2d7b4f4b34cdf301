#pragma once
// What the ALSA host learns about a sequencer client from the sound card it
// belongs to: the card's name is the device's model, and a USB card's long
// name carries the device's manufacturer.
#include <string>
#include <string_view>

#include "midi/midi_host.h"

namespace dialcraft {

struct AlsaCardNames {
    std::string name;       // "4AC1CC27"
    std::string long_name;  // "Maker 4AC1CC27 at usb-dummy_hcd.0-1, high speed"
};

// Reads the names of card `card` from its control device
// /dev/snd/controlC<card>: one open and one question to the kernel.
// Returns 0 or the negative errno; `out` is only written on success.
MidiStatus read_alsa_card_names(int card, AlsaCardNames* out);

// The USB driver names a card "<manufacturer> <name> at usb-<path>...". Returns
// the manufacturer part, or empty when the long name has no such form or the
// device gave no manufacturer string.
std::string usb_manufacturer_from_long_name(std::string_view long_name, std::string_view card_name);

}  // namespace dialcraft
