#pragma once
// Repeatable random slot strings for round-trip tests of the stored table.
//
// Code points come from the whole Unicode range except the surrogates
// U+D800..U+DFFF: a QString holding a lone surrogate cannot be written as
// UTF-8 faithfully (QString::toUtf8 turns it into '?'), so no encoder of the
// table can bring one back. Astral characters appear as proper surrogate
// pairs. Characters that need care in JSON or in UTF-8 conversion are drawn
// more often than chance would: U+FEFF, U+0000..U+001F, the quotation mark,
// reverse solidus and solidus, and the edges of the UTF-8 lengths.
#include <QString>
#include <QStringList>

#include <cstdint>
#include <iterator>
#include <random>

class RandomText {
public:
    explicit RandomText(std::uint32_t seed) : engine_(seed) {}

    char32_t code_point()
    {
        static constexpr char32_t special[] = {
            0xFEFF, 0xFEFF, 0xFEFF, 0x0000, 0x001F, '"',     '\\',    '/',      0x7F,   0x80,   0x7FF, 0x800,
            0xD7FF, 0xE000, 0xFFFD, 0xFFFE, 0xFFFF, 0x10000, 0x1F39B, 0x10FFFF, 0x4E00, 0x9009, ' ',
        };
        switch (pick(0, 5)) {
        case 0: return special[pick(0, std::uint32_t(std::size(special) - 1))];
        case 1: return char32_t(pick(0x20, 0x7E));
        case 2: return char32_t(pick(0x00, 0x1F));
        case 3: {
            // The BMP above ASCII, surrogates left out.
            const char32_t c = char32_t(pick(0x80, 0xFFFF - 0x800));
            return c < 0xD800 ? c : c + 0x800;
        }
        case 4: return char32_t(pick(0x10000, 0x10FFFF));
        default: return 0xFEFF;  // also often in first place, where a converter might drop it
        }
    }

    QString string(int max_code_points)
    {
        QString out;
        const auto length = pick(0, std::uint32_t(max_code_points));
        for (std::uint32_t i = 0; i < length; ++i) {
            const char32_t c = code_point();
            if (c < 0x10000) {
                out += QChar(char16_t(c));
            } else {
                out += QChar(QChar::highSurrogate(c));
                out += QChar(QChar::lowSurrogate(c));
            }
        }
        return out;
    }

    QStringList table(int count, int max_code_points)
    {
        QStringList out;
        out.reserve(count);
        for (int i = 0; i < count; ++i)
            out.append(string(max_code_points));
        return out;
    }

    std::uint32_t pick(std::uint32_t low, std::uint32_t high)
    {
        return std::uniform_int_distribution<std::uint32_t>(low, high)(engine_);
    }

private:
    std::mt19937 engine_;
};
