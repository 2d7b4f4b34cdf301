#include "midi/alsa/card_names.h"

#include <alsa/asoundlib.h>

#include <memory>
#include <string>

namespace {
struct CtlCloser {
    void operator()(snd_ctl_t* ctl) const { snd_ctl_close(ctl); }
};
struct CardInfoFree {
    void operator()(snd_ctl_card_info_t* info) const { snd_ctl_card_info_free(info); }
};
}  // namespace

MidiStatus read_alsa_card_names(int card, AlsaCardNames* out)
{
    if (card < 0 || !out)
        return -EINVAL;
    const std::string device = "hw:" + std::to_string(card);
    snd_ctl_t* raw_ctl = nullptr;
    if (int err = snd_ctl_open(&raw_ctl, device.c_str(), 0); err < 0)
        return err;
    std::unique_ptr<snd_ctl_t, CtlCloser> ctl(raw_ctl);
    snd_ctl_card_info_t* raw_info = nullptr;
    if (int err = snd_ctl_card_info_malloc(&raw_info); err < 0)
        return err;
    std::unique_ptr<snd_ctl_card_info_t, CardInfoFree> info(raw_info);
    if (int err = snd_ctl_card_info(ctl.get(), info.get()); err < 0)
        return err;
    out->name = snd_ctl_card_info_get_name(info.get());
    out->long_name = snd_ctl_card_info_get_longname(info.get());
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
