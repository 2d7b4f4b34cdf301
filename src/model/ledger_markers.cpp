#include "model/ledger_markers.h"

#include "base/integer_text.h"
#include "model/global_state.h"
#include "model/knob_record.h"

namespace dialcraft {

namespace {

bool same_number(const QString& text, int number)
{
    const std::optional<int64_t> value = parse_int64(text.toStdString(), 10);
    return value && *value == number;
}

}  // namespace

KnobMarker knob_marker(const HeldSetting* held, const QString& type, const QString& channel, const QString& controller)
{
    if (!held)
        return KnobMarker::never_written;
    const bool same = type == held->type && same_number(channel, held->channel) &&
                      same_number(controller, held->controller);
    return same ? KnobMarker::written : KnobMarker::differs;
}

LedgerMarkers ledger_markers(const ControllerLedger& ledger, const QString& serial, const GlobalState& state)
{
    LedgerMarkers markers;
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        const CreateSetupAreaViewData* record = state.record(knob);
        const KnobMarker marker = record ? knob_marker(ledger.held(serial, knob), record->message_type_menu_string(),
                                                       record->message_channel_menu_string(),
                                                       record->message_controller_number_code_string())
                                         : KnobMarker::never_written;
        markers.knobs[static_cast<size_t>(knob)] = marker;
        switch (marker) {
        case KnobMarker::written: ++markers.written; break;
        case KnobMarker::differs: ++markers.differs; break;
        case KnobMarker::never_written: ++markers.never_written; break;
        }
    }
    return markers;
}

QString ledger_summary_text(const QString& serial, const LedgerMarkers& markers)
{
    return serial + QStringLiteral(": 已写入 ") + QString::number(markers.written) + QStringLiteral(", 不同 ") +
           QString::number(markers.differs) + QStringLiteral(", 未写入 ") + QString::number(markers.never_written);
}

}  // namespace dialcraft
