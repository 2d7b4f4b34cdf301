#include "ui/status/transfer_notes.h"

#include "model/configuration.h"
#include "model/document_slots.h"
#include "model/slot_mapping.h"
#include "ui/status/import_offer.h"
#include "ui/status/status_texts.h"
#include "ui/status/window_status.h"

namespace dialcraft {

TransferNotes::TransferNotes(QObject* parent) : QObject(parent) {}

void TransferNotes::setTransfer(ConfigFileTransfer* transfer)
{
    if (transfer_ == transfer)
        return;
    if (transfer_)
        disconnect(transfer_, nullptr, this, nullptr);
    transfer_ = transfer;
    if (transfer) {
        connect(transfer, &ConfigFileTransfer::exportPrepared, this, &TransferNotes::exportPrepared);
        connect(transfer, &ConfigFileTransfer::fileSaved, this, [this](const QUrl& url) {
            say(gapWarning_.isEmpty() ? saved_text(url) : saved_text(url) + u'\n' + gapWarning_);
        });
        connect(transfer, &ConfigFileTransfer::fileNotSaved, this,
                [this](const QString& reason) { say(not_saved_text(reason)); });
        // A new import refreshes the panels from the table first, so an
        // earlier import's offer is moot from then on.
        connect(transfer, &ConfigFileTransfer::fileURLStringChanged, this, [this] {
            if (state_)
                WindowStatus::of(*state_)->importOffer()->withdraw();
        });
        connect(transfer, &ConfigFileTransfer::fileRead, this, [this](const QUrl& url, qsizetype slotCount) {
            // The text just applied: its empty lines moved the later slots up.
            const qsizetype dropped = split_document_slots(transfer_->documentText()).shifting_empty_lines.size();
            say(read_text(url, slotCount, dropped));
            if (state_)
                WindowStatus::of(*state_)->importOffer()->offer();
        });
        connect(transfer, &ConfigFileTransfer::fileNotRead, this,
                [this](const QString& location) { say(not_read_text(location)); });
    }
    emit transferChanged();
}

void TransferNotes::setGlobalState(GlobalState* state)
{
    if (state_ == state)
        return;
    state_ = state;
    emit globalStateChanged();
}

QList<int> TransferNotes::knobsWithEmptySlots()
{
    // Knob i owns slots 3i to 3i+2. An empty slot is an empty line in the
    // file, which the import drops, so every later slot moves up.
    QList<int> knobs;
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        for (int slot = 3 * knob; slot < 3 * knob + 3; ++slot) {
            if (slot < configuration.settings.size() && configuration.settings.at(slot).isEmpty()) {
                knobs.append(knob);
                break;
            }
        }
    }
    return knobs;
}

void TransferNotes::exportPrepared()
{
    const QList<int> knobs = knobsWithEmptySlots();
    gapWarning_ = knobs.isEmpty() ? QString() : export_gap_warning(knobs);
    say(gapWarning_);
}

void TransferNotes::say(const QString& text)
{
    if (state_)
        WindowStatus::of(*state_)->setMessage(text);
}

}  // namespace dialcraft
