#include "model/knob_attribution.h"

#include <map>
#include <utility>
#include <vector>

#include "base/integer_text.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"

namespace dialcraft {

namespace {

std::optional<MidiKind> kind_of_type(const QString& type)
{
    if (type == NOTE_ON)
        return MidiKind::note_on;
    if (type == NOTE_OFF)
        return MidiKind::note_off;
    if (type == CONTROL_CHANGE)
        return MidiKind::control_change;
    if (type == BEND_CHANGE)
        return MidiKind::pitch_bend;
    return std::nullopt;
}

std::optional<KnobSends> knob_sends_from_values(int knob, const QString& type, int64_t channel, int64_t controller)
{
    const std::optional<MidiKind> kind = kind_of_type(type);
    if (!kind || channel < 1 || channel > 16 || controller < 0 || controller > 127)
        return std::nullopt;
    return KnobSends{knob, *kind, static_cast<uint8_t>(channel), static_cast<uint8_t>(controller)};
}

}  // namespace

std::optional<KnobSends> knob_sends_from_text(int knob, const QString& type, const QString& channel,
                                              const QString& controller)
{
    const std::optional<int64_t> channel_value = parse_int64(channel.toStdString(), 10);
    const std::optional<int64_t> controller_value = parse_int64(controller.toStdString(), 10);
    if (!channel_value || !controller_value)
        return std::nullopt;
    return knob_sends_from_values(knob, type, *channel_value, *controller_value);
}

std::optional<KnobSends> knob_sends_from_held(int knob, const HeldSetting& held)
{
    return knob_sends_from_values(knob, held.type, held.channel, held.controller);
}

KnobMatcher knob_attribution(const QString& serial, const ControllerLedger& ledger, const GlobalState* state)
{
    // Only the family's controllers were programmed with these settings.
    if (!machine_type_array().contains(serial))
        return KnobMatcher();
    // Knob to setting; the map keeps knob order and lets the ledger win.
    std::map<int, std::optional<KnobSends>> settings;
    if (const auto held = ledger.controllers.find(serial); held != ledger.controllers.end())
        for (const auto& [knob, setting] : held->second)
            settings.emplace(knob, knob_sends_from_held(knob, setting));
    for (int knob = 0; state && knob < mapped_knob_count; ++knob) {
        const CreateSetupAreaViewData* record = state->record(knob);
        if (record && !settings.contains(knob))
            settings.emplace(knob, knob_sends_from_text(knob, record->message_type_menu_string(),
                                                        record->message_channel_menu_string(),
                                                        record->message_controller_number_code_string()));
    }
    std::vector<KnobSends> knobs;
    for (const auto& [knob, setting] : settings)
        if (setting)
            knobs.push_back(*setting);
    return KnobMatcher(std::move(knobs));
}

}  // namespace dialcraft
