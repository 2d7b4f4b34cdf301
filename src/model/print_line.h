#pragma once
// Prints one application line (UTF-8, line feed) through the same single-write
// console as the MIDI link, so the two kinds of lines keep their order.
#include <QString>

#include "base/console.h"

namespace dialcraft {

inline void print_line(const QString& line)
{
    console_line(line.toStdString());
}

}  // namespace dialcraft
