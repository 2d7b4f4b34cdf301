#include "model/list_notation.h"

namespace dialcraft {

namespace {

void append_quoted(QString& out, const QString& text)
{
    static const char hex[] = "0123456789abcdef";
    out += u'"';
    for (QChar c : text) {
        switch (c.unicode()) {
        case u'\\': out += u"\\\\"; break;
        case u'"': out += u"\\\""; break;
        case u'\'': out += u"\\'"; break;
        case u'\0': out += u"\\0"; break;
        case u'\n': out += u"\\n"; break;
        case u'\r': out += u"\\r"; break;
        case u'\t': out += u"\\t"; break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7f) {
                out += u"\\u{";
                out += QChar(hex[c.unicode() >> 4]);
                out += QChar(hex[c.unicode() & 0xf]);
                out += u'}';
            } else {
                out += c;
            }
        }
    }
    out += u'"';
}

}  // namespace

QString list_notation(const QStringList& strings)
{
    QString out;
    qsizetype size = 2;
    for (const QString& s : strings)
        size += s.size() + 4;
    out.reserve(size);
    out += u'[';
    for (qsizetype i = 0; i < strings.size(); ++i) {
        if (i > 0)
            out += u", ";
        append_quoted(out, strings[i]);
    }
    out += u']';
    return out;
}

}  // namespace dialcraft
