#include "midi/alsa/object_ref.h"

namespace dialcraft {

MidiObjectRef encode_alsa_ref(const AlsaRef& ref)
{
    return (MidiObjectRef{static_cast<uint8_t>(ref.kind)} << 24) | (MidiObjectRef{ref.serial} << 16) |
           (MidiObjectRef{ref.client} << 8) | MidiObjectRef{ref.port};
}

std::optional<AlsaRef> decode_alsa_ref(MidiObjectRef handle)
{
    const auto kind = static_cast<uint8_t>(handle >> 24);
    if (kind < static_cast<uint8_t>(AlsaRefKind::client) || kind > static_cast<uint8_t>(AlsaRefKind::device))
        return std::nullopt;
    return AlsaRef{static_cast<AlsaRefKind>(kind), static_cast<uint8_t>(handle >> 16),
                   static_cast<uint8_t>(handle >> 8), static_cast<uint8_t>(handle)};
}

}  // namespace dialcraft
