#pragma once
// Reads a string property of a MIDI object into one of the link's 64-byte
// buffers. The text goes through the scratch handle `pname`; an absent
// property leaves the target buffer as it was.
#include "midi/host_selection.h"

namespace dialcraft {

bool copy_string_property(MidiObjectRef obj, MidiStringProperty prop, char (&target)[64]);
// Whether the first eight characters of `text` equal those of device_name.
bool matches_device_name(const char* text);

}  // namespace dialcraft
