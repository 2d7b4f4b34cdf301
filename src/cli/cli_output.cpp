#include "cli/cli_output.h"

#include <QJsonDocument>

#include "cli/knob_programming.h"

namespace dialcraft {

QString shown_field(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("-") : text;
}

std::string knob_outcome_line(const KnobOutcome& outcome)
{
    QString line = QStringLiteral("旋钮(knob) %1: %2, 通道(channel) %3, 控制器号(controller) %4")
                       .arg(outcome.knob)
                       .arg(shown_field(outcome.type), shown_field(outcome.channel), shown_field(outcome.controller));
    if (!outcome.checked) {
        QString message = outcome.message;
        message.replace(u'\n', u' ');
        line += QStringLiteral(" -> 未发送(not sent): ") + message;
        return line.toStdString();
    }
    QString destinations;
    for (const std::string& name : outcome.destinations)
        destinations += (destinations.isEmpty() ? "" : " + ") + QString::fromStdString(name);
    line += QStringLiteral(" -> %1, 已接受(accepted) %2/%3, %4")
                .arg(destinations.isEmpty() ? QStringLiteral("无(none)") : destinations)
                .arg(outcome.accepted)
                .arg(programming_messages)
                .arg(outcome.ok() ? QStringLiteral("成功(ok)") : QStringLiteral("失败(failed)"));
    return line.toStdString();
}

QJsonObject knob_outcome_json(const KnobOutcome& outcome)
{
    QJsonArray destinations;
    for (const std::string& name : outcome.destinations)
        destinations.append(QString::fromStdString(name));
    return QJsonObject{
        {"knob", outcome.knob},
        {"type", outcome.type},
        {"channel", outcome.channel},
        {"controller", outcome.controller},
        {"serial", outcome.serial},
        {"destinations", destinations},
        {"accepted", outcome.accepted},
        {"refused", outcome.refused},
        {"result", outcome.result ? QJsonValue(*outcome.result) : QJsonValue(QJsonValue::Null)},
        {"message", outcome.message},
        {"ok", outcome.ok()},
    };
}

std::string json_line(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString() + "\n";
}

std::string json_line(const QJsonArray& array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Compact).toStdString() + "\n";
}

}  // namespace dialcraft
