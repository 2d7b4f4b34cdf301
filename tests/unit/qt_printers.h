#pragma once
// Readable failure messages for Qt strings and lists in GoogleTest assertions.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* os)
{
    *os << '[';
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (i > 0)
            *os << ", ";
        PrintTo(list[i], os);
    }
    *os << "] (" << list.size() << " strings)";
}

inline void PrintTo(const QByteArray& bytes, std::ostream* os)
{
    *os << '"' << bytes.toStdString() << "\" (" << bytes.size() << " bytes)";
}
