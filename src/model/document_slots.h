#pragma once
// How an imported text becomes slots: it is cut at every line feed and the
// empty pieces are dropped. The import applies only `pieces`; the rest says
// what the cutting did, so a caller can warn about it.
#include <QList>
#include <QString>
#include <QStringList>

namespace dialcraft {

struct DocumentSlots {
    QStringList pieces;
    // Line numbers (from 1) of the dropped empty lines that come before a
    // later non-empty line: every slot after such a line moved up by one.
    // Empty lines at the very end move nothing and are not listed.
    QList<qsizetype> shifting_empty_lines;
    // Whether the text holds a carriage return before a line feed. Such a
    // pair is one character that is not a line feed, so it does not cut.
    bool has_cr_lf = false;
};

DocumentSlots split_document_slots(const QString& text);

}  // namespace dialcraft
