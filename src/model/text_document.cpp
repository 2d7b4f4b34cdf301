#include "model/text_document.h"

#include <QByteArrayView>

namespace {

constexpr char16_t replacement_character = 0xFFFD;

bool in(unsigned char byte, unsigned char low, unsigned char high)
{
    return byte >= low && byte <= high;
}

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
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype size = bytes.size();
    qsizetype i = 0;
    while (i < size) {
        const unsigned char lead = data[i];
        if (lead < 0x80) {
            out += QChar(char16_t(lead));
            ++i;
            continue;
        }
        int continuation = 0;
        unsigned char second_low = 0x80, second_high = 0xBF;
        char32_t code_point = 0;
        if (in(lead, 0xC2, 0xDF)) {
            continuation = 1;
            code_point = lead & 0x1F;
        } else if (in(lead, 0xE0, 0xEF)) {
            continuation = 2;
            code_point = lead & 0x0F;
            if (lead == 0xE0)
                second_low = 0xA0;
            else if (lead == 0xED)
                second_high = 0x9F;
        } else if (in(lead, 0xF0, 0xF4)) {
            continuation = 3;
            code_point = lead & 0x07;
            if (lead == 0xF0)
                second_low = 0x90;
            else if (lead == 0xF4)
                second_high = 0x8F;
        } else {
            out += QChar(replacement_character);
            ++i;
            continue;
        }
        qsizetype j = i + 1;
        bool complete = true;
        for (int k = 0; k < continuation; ++k, ++j) {
            const unsigned char low = k == 0 ? second_low : 0x80;
            const unsigned char high = k == 0 ? second_high : 0xBF;
            if (j >= size || !in(data[j], low, high)) {
                complete = false;
                break;
            }
            code_point = (code_point << 6) | (data[j] & 0x3F);
        }
        if (complete)
            append_code_point(out, code_point);
        else
            out += QChar(replacement_character);
        i = j;
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
