#pragma once
// The stored form of the slot table: compact JSON {"settings":[...]}, UTF-8,
// solidus written as "\/", non-ASCII characters as raw UTF-8.
#include <QByteArray>
#include <QString>

#include <optional>

#include "model/configuration.h"

namespace dialcraft {

// Strings always serialise, so encoding cannot fail.
QByteArray encode_configuration(const Configuration& config);

// Accepts an object whose "settings" member is an array of strings; other
// members are ignored. On failure returns nothing and describes why in `error`.
std::optional<Configuration> decode_configuration(const QByteArray& bytes, QString* error = nullptr);

}  // namespace dialcraft
