#include "model/vocabulary.h"

const QStringList& machine_type_array()
{
    static const QStringList serials = [] {
        QStringList list;
        for (int i = 0; i <= 15; ++i)
            list.append(QString::asprintf("4AC%XCC27", i));
        return list;
    }();
    return serials;
}
