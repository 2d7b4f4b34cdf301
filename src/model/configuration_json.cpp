#include "model/configuration_json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>

namespace {

// Escapes at the byte level: every byte that needs escaping is ASCII, so the
// multi-byte UTF-8 sequences pass through untouched.
void append_json_string(QByteArray& out, const QString& text)
{
    static const char hex[] = "0123456789abcdef";
    const QByteArray utf8 = text.toUtf8();
    out += '"';
    for (char ch : utf8) {
        const auto byte = static_cast<unsigned char>(ch);
        switch (byte) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '/': out += "\\/"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (byte < 0x20) {
                out += "\\u00";
                out += hex[byte >> 4];
                out += hex[byte & 0xf];
            } else {
                out += ch;
            }
        }
    }
    out += '"';
}

void set_error(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

}  // namespace

QByteArray encode_configuration(const Configuration& config)
{
    QByteArray out;
    qsizetype size = 16;
    for (const QString& s : config.settings)
        size += s.size() * 3 + 3;
    out.reserve(size);
    out += "{\"settings\":[";
    for (qsizetype i = 0; i < config.settings.size(); ++i) {
        if (i > 0)
            out += ',';
        append_json_string(out, config.settings[i]);
    }
    out += "]}";
    return out;
}

std::optional<Configuration> decode_configuration(const QByteArray& bytes, QString* error)
{
    QJsonParseError parse_error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parse_error);
    if (parse_error.error != QJsonParseError::NoError) {
        set_error(error, QStringLiteral("The data is not valid JSON (%1 at offset %2).")
                             .arg(parse_error.errorString())
                             .arg(parse_error.offset));
        return std::nullopt;
    }
    if (!document.isObject()) {
        set_error(error, QStringLiteral("Expected a JSON object at the top level."));
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    const auto member = object.constFind(QLatin1String("settings"));
    if (member == object.constEnd()) {
        set_error(error, QStringLiteral("No value associated with key \"settings\"."));
        return std::nullopt;
    }
    if (!member->isArray()) {
        set_error(error, QStringLiteral("Expected an array of strings for key \"settings\"."));
        return std::nullopt;
    }
    const QJsonArray array = member->toArray();
    Configuration config;
    config.settings.reserve(array.size());
    for (qsizetype i = 0; i < array.size(); ++i) {
        const QJsonValue value = array.at(i);
        if (!value.isString()) {
            set_error(error, QStringLiteral("Expected a string at \"settings\" index %1.").arg(i));
            return std::nullopt;
        }
        config.settings.append(value.toString());
    }
    return config;
}
