#include "ui/bridge/menu_vocabulary.h"

#include "model/vocabulary.h"

namespace dialcraft {

MenuVocabulary::MenuVocabulary(QObject* parent) : QObject(parent) {}

QStringList MenuVocabulary::machineTypes()
{
    return machine_type_array();
}

QStringList MenuVocabulary::messageTypeMenuItems()
{
    return {NOTE_ON, NOTE_OFF, CONTROL_CHANGE, BEND_CHANGE, Default_TYPE_STRING};
}

}  // namespace dialcraft
