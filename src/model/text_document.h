#pragma once
// The plain-text document that carries an exported or imported table.
#include <QByteArray>
#include <QString>

namespace dialcraft {

struct TextDocument {
    QString text;

    // UTF-8, invalid sequences replaced by U+FFFD; never fails.
    static TextDocument fromBytes(const QByteArray& bytes);
    // UTF-8 without byte-order mark or added final line break.
    QByteArray toBytes() const;
};

}  // namespace dialcraft
