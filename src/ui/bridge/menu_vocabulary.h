#pragma once
// The texts of the two pull-down menus, for QML.
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class MenuVocabulary : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Vocabulary)
    QML_SINGLETON
    // The model menu: the sixteen serials 4AC0CC27 to 4ACFCC27.
    Q_PROPERTY(QStringList machineTypes READ machineTypes CONSTANT)
    // The knob's type menu: the four message types, then the placeholder that
    // resets the choice. "System Change" is never offered.
    Q_PROPERTY(QStringList messageTypeMenuItems READ messageTypeMenuItems CONSTANT)

public:
    explicit MenuVocabulary(QObject* parent = nullptr);

    static QStringList machineTypes();
    static QStringList messageTypeMenuItems();
};

}  // namespace dialcraft
