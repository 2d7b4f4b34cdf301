#pragma once
// Message-type names, the placeholder shown while no type is chosen, and the
// model serials of the controller family.
#include <QString>
#include <QStringList>

namespace dialcraft {

inline const QString NOTE_ON = QStringLiteral("Note On");
inline const QString NOTE_OFF = QStringLiteral("Note Off");
inline const QString CONTROL_CHANGE = QStringLiteral("Control Change");
inline const QString BEND_CHANGE = QStringLiteral("Bend Change");
inline const QString SYSTEM_CHANGE = QStringLiteral("System Change");
inline const QString Default_TYPE_STRING = QStringLiteral("选择消息类型");

// Whether a knob of this type can be programmed: Note On, Note Off, Control
// Change or Bend Change, compared whole and case-sensitively. System Change is
// left out on purpose: no menu offers it, a stored one comes back as the
// placeholder and it fails the set action's check.
bool is_programmable_type(const QString& text);

// "4AC0CC27" ... "4ACFCC27", one upper-case hexadecimal middle digit each.
const QStringList& machine_type_array();

}  // namespace dialcraft
