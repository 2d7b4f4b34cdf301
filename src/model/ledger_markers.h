#pragma once
// How the knob table compares with what one controller holds, knob by knob,
// for the window's markers, its status line, "only changed" and the
// command-line tool's show and apply.
#include <QString>

#include <array>

#include "model/controller_ledger.h"
#include "model/slot_mapping.h"

namespace dialcraft {

class GlobalState;

enum class KnobMarker {
    written,        // 已写入: the controller holds exactly this setting
    differs,        // 与控制器不同: it holds another one
    never_written,  // 未写入: the ledger has nothing for the knob
};

// One knob: the setting as typed (display name, channel and controller texts)
// against what the controller holds (`held`, nullptr for nothing). Numbers are
// compared as numbers, so "05" matches 5; a setting that would not pass the
// set action's check differs from anything held.
KnobMarker knob_marker(const HeldSetting* held, const QString& type, const QString& channel, const QString& controller);

struct LedgerMarkers {
    std::array<KnobMarker, mapped_knob_count> knobs{};
    int written = 0;
    int differs = 0;
    int never_written = 0;

    bool operator==(const LedgerMarkers&) const = default;
};

// Knobs 0 to 26 of `state` against what controller `serial` holds.
LedgerMarkers ledger_markers(const ControllerLedger& ledger, const QString& serial, const GlobalState& state);

// "4AC3CC27: 已写入 20, 不同 3, 未写入 4".
QString ledger_summary_text(const QString& serial, const LedgerMarkers& markers);

// Whether programming the knob would change what the controller holds:
// everything but an already written knob.
inline bool needs_programming(KnobMarker marker)
{
    return marker != KnobMarker::written;
}

}  // namespace dialcraft
