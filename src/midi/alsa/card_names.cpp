#include "midi/alsa/card_names.h"

#include <fcntl.h>
#include <sound/asound.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace dialcraft {

namespace {
// The kernel's fixed-size text fields need not end in a terminator.
std::string field_text(const unsigned char* field, size_t size)
{
    const auto* text = reinterpret_cast<const char*>(field);
    return std::string(text, strnlen(text, size));
}
}  // namespace

// The card's control device is opened directly and asked once. alsa-lib's
// snd_ctl_open("hw:N") would first look the name up in its configuration,
// which costs more than the question itself, on every read.
MidiStatus read_alsa_card_names(int card, AlsaCardNames* out)
{
    if (card < 0 || !out)
        return -EINVAL;
    const std::string device = "/dev/snd/controlC" + std::to_string(card);
    int fd;
    do
        fd = ::open(device.c_str(), O_RDONLY | O_CLOEXEC);
    while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return -errno;
    snd_ctl_card_info info;
    std::memset(&info, 0, sizeof info);
    int rc;
    do
        rc = ioctl(fd, SNDRV_CTL_IOCTL_CARD_INFO, &info);
    while (rc < 0 && errno == EINTR);
    const int err = rc < 0 ? -errno : 0;
    ::close(fd);
    if (err != 0)
        return err;
    out->name = field_text(info.name, sizeof info.name);
    out->long_name = field_text(info.longname, sizeof info.longname);
    return 0;
}

std::string usb_manufacturer_from_long_name(std::string_view long_name, std::string_view card_name)
{
    const std::string tail = std::string(card_name) + " at usb-";
    const size_t at = long_name.rfind(tail);
    // Without a manufacturer string the long name starts with the card name.
    if (at == std::string_view::npos || at == 0 || long_name[at - 1] != ' ')
        return {};
    std::string_view manufacturer = long_name.substr(0, at);
    while (!manufacturer.empty() && manufacturer.back() == ' ')
        manufacturer.remove_suffix(1);
    return std::string(manufacturer);
}

}  // namespace dialcraft
