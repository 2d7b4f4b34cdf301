#pragma once
// The printed form of a list of slots: ["a", "b"]. Each string is quoted and
// its backslashes, quotes and control characters escaped, so one list always
// stays on one printed line.
#include <QString>
#include <QStringList>

namespace dialcraft {

QString list_notation(const QStringList& strings);

}  // namespace dialcraft
