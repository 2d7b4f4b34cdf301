#pragma once
// What each controller holds. A controller of the family cannot be read back,
// so the only record of its knobs is the one kept here: for each serial and
// knob, the setting of the last programming whose five messages the MIDI
// service all accepted, and when that was.
#include <QDateTime>
#include <QString>

#include <map>

namespace dialcraft {

struct HeldSetting {
    QString type;        // one of the four programmable display names
    int channel = 1;     // 1 to 16
    int controller = 0;  // 0 to 127
    QDateTime written;   // UTC
    // When the controller was seen sending this setting (a knob turned in
    // the monitor after programming), UTC; invalid until then.
    QDateTime verified{};

    friend bool operator==(const HeldSetting&, const HeldSetting&) = default;
};

// Knob index to its setting.
using HeldKnobs = std::map<int, HeldSetting>;

struct ControllerLedger {
    // Serial ("4AC3CC27") to the knobs that controller holds.
    std::map<QString, HeldKnobs> controllers;

    // What knob `knob` of controller `serial` holds, or nullptr when nothing
    // was ever written there.
    const HeldSetting* held(const QString& serial, int knob) const;

    friend bool operator==(const ControllerLedger&, const ControllerLedger&) = default;
};

}  // namespace dialcraft
