#include "model/text_document.h"

#include "base/utf8_step.h"

namespace dialcraft {

namespace {

void append_code_point(QString& out, char32_t code_point)
{
    if (code_point < 0x10000) {
        out += QChar(static_cast<char16_t>(code_point));
    } else {
        out += QChar(QChar::highSurrogate(code_point));
        out += QChar(QChar::lowSurrogate(code_point));
    }
}

// Each maximal ill-formed subpart becomes one U+FFFD, the usual practice of
// UTF-8 decoders; a byte-order mark is kept as a character.
QString decode_utf8_with_replacement(const QByteArray& bytes)
{
    QString out;
    out.reserve(bytes.size());
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const auto* end = p + bytes.size();
    while (p < end) {
        if (*p < 0x80) {
            out += QChar(char16_t(*p++));
            continue;
        }
        const Utf8Step step = next_utf8(p, end);
        append_code_point(out, step.valid ? step.code_point : char32_t(0xFFFD));
        p += step.length;
    }
    return out;
}

}  // namespace

TextDocument TextDocument::fromBytes(const QByteArray& bytes)
{
    return TextDocument{decode_utf8_with_replacement(bytes)};
}

QByteArray TextDocument::toBytes() const
{
    return text.toUtf8();
}

}  // namespace dialcraft
