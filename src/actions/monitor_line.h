#pragma once
// How one received message reads in the monitors, the window's and the cli's:
//   21:14:03.512  4AC3CC27  Control Change  ch 2  #74  64  -> 5号旋钮
// with "-" where the kind has no channel, number or value, the matched knobs
// joined by ", ", or 未匹配(unmatched). Times are local, to the millisecond.
#include <QJsonObject>
#include <QString>

#include <vector>

#include "actions/monitor_inbox.h"

namespace dialcraft {

// "未匹配(unmatched)"
QString unmatched_text();
// "5号旋钮", or "3号旋钮, 5号旋钮", or unmatched_text() when `knobs` is empty.
QString matched_knobs_text(const std::vector<int>& knobs);
// The value column: "64", "8192", or "-".
QString monitor_value_text(const MidiMessage& message);

QString monitor_line(const HeardMessage& heard, const std::vector<int>& knobs);
// The line without its time and serial: "Control Change  ch 2  #74  64  -> 5号旋钮".
QString monitor_message_text(const MidiMessage& message, const std::vector<int>& knobs);

// {"time":"2026-11-24T21:14:03.512Z","serial":"4AC3CC27","type":"Control Change",
//  "channel":2,"number":74,"value":64,"knobs":[5]}; channel, number and value
// are null where the kind has none. The time is UTC.
QJsonObject monitor_json(const HeardMessage& heard, const std::vector<int>& knobs);

}  // namespace dialcraft
