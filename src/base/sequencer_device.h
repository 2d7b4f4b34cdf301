#pragma once
// Whether the ALSA sequencer's device can be opened at all, to tell "the
// sequencer is missing" (its kernel module not loaded, no permission) apart
// from "no controller is connected". DIALCRAFT_SEQ_DEVICE names another path
// to look at in its place: a test hook, so tests need not remove the device.
#include <optional>
#include <string>

namespace dialcraft {

// "/dev/snd/seq", or DIALCRAFT_SEQ_DEVICE when it is set.
std::string sequencer_device_path();
// Why the device cannot be opened for reading and writing (strerror of the
// check, e.g. "No such file or directory"); nothing when it can.
std::optional<std::string> sequencer_unavailable_reason();
// "ALSA 音序器不可用(the ALSA sequencer is not available) (/dev/snd/seq: <reason>);
// 加载(load it with) `sudo modprobe snd-seq`".
std::string sequencer_unavailable_text(const std::string& reason);

}  // namespace dialcraft
