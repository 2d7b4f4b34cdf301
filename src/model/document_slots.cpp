#include "model/document_slots.h"

namespace dialcraft {

DocumentSlots split_document_slots(const QString& text)
{
    DocumentSlots result;
    QList<qsizetype> pending_empty;  // empty lines not yet followed by a slot
    qsizetype line = 1;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\n')
            continue;
        if (i > 0 && text[i - 1] == u'\r') {
            result.has_cr_lf = true;
            continue;
        }
        if (i > start) {
            result.pieces.append(text.mid(start, i - start));
            result.shifting_empty_lines.append(pending_empty);
            pending_empty.clear();
        } else {
            pending_empty.append(line);
        }
        ++line;
        start = i + 1;
    }
    if (text.size() > start) {
        result.pieces.append(text.mid(start));
        result.shifting_empty_lines.append(pending_empty);
    }
    return result;
}

}  // namespace dialcraft
