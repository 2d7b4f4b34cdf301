#include "ui/status/window_status.h"

#include <QQmlEngine>

#include "model/global_state.h"
#include "model/ledger_marker_list.h"
#include "ui/monitor/knob_monitor.h"
#include "ui/press/set_all_run.h"

namespace dialcraft {

WindowStatus::WindowStatus(GlobalState& state)
    : QObject(&state),
      ledgerMarkers_(new LedgerMarkerList(this)),
      monitor_(new KnobMonitor(state, *this, *ledgerMarkers_)),
      setAll_(new SetAllRun(state, *this))
{
    ledgerMarkers_->setGlobalState(&state);
    QQmlEngine::setObjectOwnership(ledgerMarkers_, QQmlEngine::CppOwnership);
    // Handed to QML through a method call; the state owns it, never QML.
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    connect(setAll_, &SetAllRun::runningChanged, this, &WindowStatus::busyChanged);
}

WindowStatus* WindowStatus::of(GlobalState& state)
{
    if (auto* existing = state.findChild<WindowStatus*>(QString(), Qt::FindDirectChildrenOnly))
        return existing;
    return new WindowStatus(state);
}

void WindowStatus::setMessage(const QString& text)
{
    if (message_ == text)
        return;
    message_ = text;
    emit messageChanged();
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
