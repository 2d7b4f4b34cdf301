#include "model/ledger_marker_list.h"

#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_store.h"

namespace dialcraft {

LedgerMarkerList::LedgerMarkerList(QObject* parent)
    : QObject(parent), ledger_(read_ledger()), file_watch_(new FileWatch(ledger_file_path(), this))
{
    connect(file_watch_, &FileWatch::changed, this, &LedgerMarkerList::reload);
}

void LedgerMarkerList::setGlobalState(GlobalState* state)
{
    if (state_ == state)
        return;
    if (state_)
        disconnect(state_, nullptr, this, nullptr);
    state_ = state;
    if (state_) {
        connect(state_, &GlobalState::machine_type_menu_stringChanged, this, &LedgerMarkerList::update);
        connect(state_, &GlobalState::SetupAreaDataChanged, this, &LedgerMarkerList::watch_records);
    }
    watch_records();
    emit globalStateChanged();
}

QList<int> LedgerMarkerList::markers() const
{
    QList<int> list;
    for (KnobMarker marker : markers_.knobs)
        list.append(static_cast<int>(marker));
    return list;
}

QString LedgerMarkerList::summaryText() const
{
    return ledger_summary_text(serial_, markers_);
}

bool LedgerMarkerList::serialHasEntries() const
{
    const auto controller = ledger_.controllers.find(serial_);
    return controller != ledger_.controllers.end() && !controller->second.empty();
}

void LedgerMarkerList::reload()
{
    ControllerLedger ledger = read_ledger();
    if (ledger == ledger_)
        return;
    ledger_ = std::move(ledger);
    refresh(true);
}

QList<int> LedgerMarkerList::knobsToProgram(const QList<int>& knobs) const
{
    QList<int> kept;
    for (int knob : knobs)
        if (knob < 0 || knob >= mapped_knob_count || needs_programming(markers_.knobs[static_cast<size_t>(knob)]))
            kept.append(knob);
    return kept;
}

void LedgerMarkerList::watch_records()
{
    for (const QMetaObject::Connection& connection : record_connections_)
        disconnect(connection);
    record_connections_.clear();
    if (state_) {
        for (int knob = 0; knob < mapped_knob_count; ++knob) {
            const CreateSetupAreaViewData* record = state_->record(knob);
            if (!record)
                continue;
            record_connections_ << connect(record, &CreateSetupAreaViewData::message_type_menu_stringChanged, this,
                                           &LedgerMarkerList::update)
                                << connect(record, &CreateSetupAreaViewData::message_channel_menu_stringChanged, this,
                                           &LedgerMarkerList::update)
                                << connect(record,
                                           &CreateSetupAreaViewData::message_controller_number_code_stringChanged, this,
                                           &LedgerMarkerList::update);
        }
    }
    update();
}

void LedgerMarkerList::update()
{
    refresh(false);
}

void LedgerMarkerList::refresh(bool ledger_changed)
{
    QString serial;
    LedgerMarkers markers;
    if (state_) {
        serial = state_->machine_type_menu_string();
        markers = ledger_markers(ledger_, serial, *state_);
    }
    if (!ledger_changed && serial == serial_ && markers == markers_)
        return;
    serial_ = std::move(serial);
    markers_ = markers;
    emit markersChanged();
}

}  // namespace dialcraft
