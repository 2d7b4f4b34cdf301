#include "model/configuration_json.h"

namespace dialcraft {

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

}  // namespace dialcraft
