#pragma once
// The printed forms of the tool's results: text lines for people, compact
// JSON (one line, UTF-8) for scripts.
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <string>

namespace dialcraft {

struct KnobOutcome;

// A field as shown to people: the text, or "-" when it is empty.
QString shown_field(const QString& text);

// "旋钮(knob) 5: Control Change, 通道(channel) 2, 控制器号(controller) 74 -> 4AC1CC27 MIDI 1,
//  已接受(accepted) 5/5, 成功(ok)"; a press stopped by the check ends in
// "-> 未发送(not sent): " and the check's message on one line.
std::string knob_outcome_line(const KnobOutcome& outcome);
QJsonObject knob_outcome_json(const KnobOutcome& outcome);

// Compact JSON followed by a line feed.
std::string json_line(const QJsonObject& object);
std::string json_line(const QJsonArray& array);

}  // namespace dialcraft
