#include "ui/status/window_status.h"

#include <QQmlEngine>

#include "model/global_state.h"
#include "model/ledger_marker_list.h"
#include "model/table_sync.h"
#include "ui/monitor/knob_monitor.h"
#include "ui/press/set_all_run.h"
#include "ui/status/import_offer.h"
#include "ui/status/status_texts.h"

namespace dialcraft {

WindowStatus::WindowStatus(GlobalState& state)
    : QObject(&state),
      ledgerMarkers_(new LedgerMarkerList(this)),
      monitor_(new KnobMonitor(state, *this, *ledgerMarkers_)),
      tableSync_(TableSync::of(state)),
      setAll_(new SetAllRun(state, *this)),
      importOffer_(new ImportOffer(state, *this))
{
    ledgerMarkers_->setGlobalState(&state);
    QQmlEngine::setObjectOwnership(ledgerMarkers_, QQmlEngine::CppOwnership);
    // Handed to QML through a method call; the state owns it, never QML.
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    connect(setAll_, &SetAllRun::runningChanged, this, &WindowStatus::busyChanged);
    QQmlEngine::setObjectOwnership(tableSync_, QQmlEngine::CppOwnership);
    // A set-all run presses the panels one by one; another program's table
    // is taken after it, not halfway through.
    connect(setAll_, &SetAllRun::runningChanged, this, [this] { tableSync_->setHeld(setAll_->running()); });
    connect(tableSync_, &TableSync::tableTaken, this,
            [this](const QList<int>& taken, bool merged, const QList<int>& conflicts, const QString& file) {
                QString text = table_taken_text(taken, merged);
                if (!conflicts.isEmpty())
                    text += QLatin1Char('\n') + conflicts_kept_text(conflicts, file);
                setMessage(text);
            });
    connect(tableSync_, &TableSync::editsRestored, this, [this](int knobs) { setMessage(edits_restored_text(knobs)); });
    connect(tableSync_, &TableSync::editsDismissed, this,
            [this](const QStringList& files) { setMessage(edits_dismissed_text(files)); });
}

QString WindowStatus::restoreOfferText() const
{
    return restore_offer_text;
}

WindowStatus* WindowStatus::of(GlobalState& state)
{
    if (auto* existing = state.findChild<WindowStatus*>(QString(), Qt::FindDirectChildrenOnly))
        return existing;
    return new WindowStatus(state);
}

void WindowStatus::setMessage(const QString& text)
{
    if (heldWarning_.isEmpty())
        show(text, false);
    else
        show(heldWarning_ + u'\n' + text, true);
}

void WindowStatus::appendMessage(const QString& line)
{
    show(message_ + u'\n' + line, warning_);
}

void WindowStatus::setWarningMessage(const QString& text)
{
    heldWarning_ = text;
    show(text, true);
}

void WindowStatus::show(const QString& text, bool warning)
{
    const bool toneChanged = warning_ != warning;
    warning_ = warning;
    if (message_ != text || toneChanged) {
        message_ = text;
        emit messageChanged();
    }
    if (toneChanged)
        emit warningChanged();
}

QString WindowStatus::spokenMessage() const
{
    return warning_ ? warning_spoken_text(message_) : message_;
}

bool WindowStatus::busy() const
{
    return setAll_->running();
}

StatusBoard::StatusBoard(QObject* parent) : QObject(parent) {}

WindowStatus* StatusBoard::of(GlobalState* state) const
{
    return state ? WindowStatus::of(*state) : nullptr;
}

}  // namespace dialcraft
