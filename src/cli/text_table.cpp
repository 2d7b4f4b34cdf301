#include "cli/text_table.h"

#include <algorithm>

namespace dialcraft {

namespace {

// East Asian wide and full-width characters: Hangul Jamo, the CJK blocks,
// Hangul syllables, compatibility ideographs, CJK forms, full-width forms and
// the supplementary ideographic planes.
bool is_wide(char32_t c)
{
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF && c != 0x303F) ||
           (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE4F) ||
           (c >= 0xFF00 && c <= 0xFF60) || (c >= 0xFFE0 && c <= 0xFFE6) || (c >= 0x20000 && c <= 0x3FFFD);
}

}  // namespace

int display_width(const QString& text)
{
    int width = 0;
    for (char32_t c : text.toUcs4())
        width += is_wide(c) ? 2 : 1;
    return width;
}

std::string text_table(const std::vector<QStringList>& rows)
{
    std::vector<int> widths;
    for (const QStringList& row : rows) {
        if (widths.size() < static_cast<size_t>(row.size()))
            widths.resize(static_cast<size_t>(row.size()), 0);
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[static_cast<size_t>(i)] = std::max(widths[static_cast<size_t>(i)], display_width(row[i]));
    }
    std::string out;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size())
                line += QString(widths[static_cast<size_t>(i)] - display_width(row[i]) + 2, u' ');
        }
        out += line.toStdString() + "\n";
    }
    return out;
}

}  // namespace dialcraft
