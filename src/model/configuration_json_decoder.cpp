// Reads the stored table with nlohmann-json. Its parser is strict (RFC 8259):
// anything that is not well-formed JSON is refused rather than repaired, so a
// damaged stored value falls back to the initial table instead of loading
// half-right slots.
#include "model/configuration_json.h"

#include <QStringDecoder>

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace dialcraft {

namespace {

using nlohmann::json;

// The library's message without the part that repeats the offending input
// ("; last read: '...'", or the digits of an overflowing number): that echo
// can be as long as the stored value and need not be UTF-8.
QString describe(const json::exception& e)
{
    std::string_view text = e.what();
    for (std::string_view echo : {std::string_view("; last read: "), std::string_view(" parsing '")}) {
        if (const size_t at = text.find(echo); at != std::string_view::npos)
            text = text.substr(0, at);
    }
    return QStringLiteral("The data is not valid JSON: ") + QString::fromUtf8(text.data(), qsizetype(text.size()));
}

std::optional<Configuration> refuse(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return std::nullopt;
}

}  // namespace

std::optional<Configuration> decode_configuration(const QByteArray& bytes, QString* error)
{
    json document;
    try {
        // The whole array by its size; the bytes need not end in a NUL.
        document = json::parse(bytes.cbegin(), bytes.cend());
    } catch (const json::exception& e) {
        return refuse(error, describe(e));
    }
    // The parser stops at a NUL byte as at the end of the input, so bytes
    // after the document would pass unseen when a NUL leads them. A NUL is
    // never part of JSON text, and any NUL before the end of the document
    // has already failed the parse, so one found now trails the document.
    if (const qsizetype nul = bytes.indexOf('\0'); nul >= 0)
        return refuse(error, QStringLiteral("The data is not valid JSON: a NUL byte follows the document at offset %1.")
                                 .arg(nul));
    if (!document.is_object())
        return refuse(error, QStringLiteral("Expected a JSON object at the top level."));
    // A repeated member has already replaced the earlier one in the parsed object.
    const auto settings = document.find("settings");
    if (settings == document.end())
        return refuse(error, QStringLiteral("No value associated with key \"settings\"."));
    if (!settings->is_array())
        return refuse(error, QStringLiteral("Expected an array of strings for key \"settings\"."));

    // QString::fromUtf8 drops a byte-order mark at the start of its input,
    // which would turn a slot "\uFEFF5" into "5". This converter keeps U+FEFF
    // wherever it stands, and Stateless makes each string start afresh. The
    // parser has already checked that every string is well-formed UTF-8.
    QStringDecoder utf8(QStringDecoder::Utf8,
                        QStringConverter::Flag::ConvertInitialBom | QStringConverter::Flag::Stateless);
    QStringList strings;
    strings.reserve(qsizetype(settings->size()));
    for (const json& element : *settings) {
        if (!element.is_string())
            return refuse(error, QStringLiteral("Expected a string at \"settings\" index %1.").arg(strings.size()));
        const std::string& text = element.get_ref<const std::string&>();
        strings.append(utf8.decode(QByteArrayView(text.data(), qsizetype(text.size()))));
    }
    return Configuration{std::move(strings)};
}

}  // namespace dialcraft
