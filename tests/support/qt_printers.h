#pragma once
// Readable failure messages for Qt strings and lists in GoogleTest assertions.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

// Long values are cut so that a failure stays readable.
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.left(300).toStdString() << (text.size() > 300 ? "\"..." : "\"");
}

inline void PrintTo(const QStringList& list, std::ostream* os)
{
    *os << '[';
    for (qsizetype i = 0; i < list.size() && i < 20; ++i) {
        if (i > 0)
            *os << ", ";
        PrintTo(list[i], os);
    }
    *os << (list.size() > 20 ? ", ...] (" : "] (") << list.size() << " strings)";
}

inline void PrintTo(const QByteArray& bytes, std::ostream* os)
{
    *os << '"' << bytes.left(300).toStdString() << (bytes.size() > 300 ? "\"..." : "\"") << " (" << bytes.size()
        << " bytes)";
}
