#include "base/sequencer_device.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace dialcraft {

std::string sequencer_device_path()
{
    const char* path = std::getenv("DIALCRAFT_SEQ_DEVICE");
    return path && *path ? path : "/dev/snd/seq";
}

std::optional<std::string> sequencer_unavailable_reason()
{
    if (access(sequencer_device_path().c_str(), R_OK | W_OK) == 0)
        return std::nullopt;
    return std::string(std::strerror(errno));
}

std::string sequencer_unavailable_text(const std::string& reason)
{
    return "ALSA 音序器不可用(the ALSA sequencer is not available) (" + sequencer_device_path() + ": " + reason +
           "); 加载(load it with) `sudo modprobe snd-seq`";
}

}  // namespace dialcraft
