#include "model/vocabulary.h"

namespace dialcraft {

bool is_programmable_type(const QString& text)
{
    return text == NOTE_ON || text == NOTE_OFF || text == CONTROL_CHANGE || text == BEND_CHANGE;
}

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

}  // namespace dialcraft
