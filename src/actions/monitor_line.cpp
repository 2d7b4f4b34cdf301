#include "actions/monitor_line.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonValue>
#include <QStringList>

#include <chrono>

namespace dialcraft {

namespace {

bool has_number(MidiKind kind)
{
    switch (kind) {
    case MidiKind::note_off:
    case MidiKind::note_on:
    case MidiKind::poly_pressure:
    case MidiKind::control_change:
    case MidiKind::program_change:
    case MidiKind::song_select: return true;
    default: return false;
    }
}

bool has_value(MidiKind kind)
{
    switch (kind) {
    case MidiKind::note_off:
    case MidiKind::note_on:
    case MidiKind::poly_pressure:
    case MidiKind::control_change:
    case MidiKind::channel_pressure:
    case MidiKind::pitch_bend:
    case MidiKind::time_code:
    case MidiKind::song_position: return true;
    default: return false;
    }
}

QDateTime time_of(const HeardMessage& heard)
{
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(heard.at.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(ms);
}

QString kind_text(MidiKind kind)
{
    const std::string_view name = midi_kind_name(kind);
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

QString unmatched_text()
{
    return QStringLiteral("未匹配(unmatched)");
}

QString matched_knobs_text(const std::vector<int>& knobs)
{
    if (knobs.empty())
        return unmatched_text();
    QStringList names;
    for (int knob : knobs)
        names.append(QString::number(knob) + QStringLiteral("号旋钮"));
    return names.join(QStringLiteral(", "));
}

QString monitor_value_text(const MidiMessage& message)
{
    return has_value(message.kind) ? QString::number(message.value) : QStringLiteral("-");
}

QString monitor_message_text(const MidiMessage& m, const std::vector<int>& knobs)
{
    const QString channel = is_channel_kind(m.kind) ? QStringLiteral("ch ") + QString::number(m.channel) : "-";
    const QString number = has_number(m.kind) ? QStringLiteral("#") + QString::number(m.number) : "-";
    return kind_text(m.kind) + "  " + channel + "  " + number + "  " + monitor_value_text(m) + "  -> " +
           matched_knobs_text(knobs);
}

QString monitor_line(const HeardMessage& heard, const std::vector<int>& knobs)
{
    return time_of(heard).toLocalTime().toString(QStringLiteral("HH:mm:ss.zzz")) + "  " +
           QString::fromLatin1(heard.serial) + "  " + monitor_message_text(heard.message, knobs);
}

QJsonObject monitor_json(const HeardMessage& heard, const std::vector<int>& knobs)
{
    const MidiMessage& m = heard.message;
    QJsonArray matched;
    for (int knob : knobs)
        matched.append(knob);
    return QJsonObject{
        {QStringLiteral("time"), time_of(heard).toUTC().toString(Qt::ISODateWithMs)},
        {QStringLiteral("serial"), QString::fromLatin1(heard.serial)},
        {QStringLiteral("type"), kind_text(m.kind)},
        {QStringLiteral("channel"), is_channel_kind(m.kind) ? QJsonValue(m.channel) : QJsonValue()},
        {QStringLiteral("number"), has_number(m.kind) ? QJsonValue(m.number) : QJsonValue()},
        {QStringLiteral("value"), has_value(m.kind) ? QJsonValue(m.value) : QJsonValue()},
        {QStringLiteral("knobs"), matched},
    };
}

}  // namespace dialcraft
