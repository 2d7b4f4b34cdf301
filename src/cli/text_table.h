#pragma once
// A table of text for a terminal: columns padded to their widest cell, two
// blanks apart, counting the wide (CJK) characters as two columns.
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace dialcraft {

// Columns a terminal gives `text`.
int display_width(const QString& text);

// The rows as lines, each ended by a line feed; the last column is not padded.
std::string text_table(const std::vector<QStringList>& rows);

}  // namespace dialcraft
