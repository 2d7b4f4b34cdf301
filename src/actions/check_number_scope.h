#pragma once
#include <QString>

#include <cstdint>

namespace dialcraft {

// 1 when `data` is a decimal integer text within [minValue, maxValue], else 0.
// A text that does not parse counts as 255, so it passes any range holding 255.
int64_t CheckNumberScope(const QString& data, int64_t minValue, int64_t maxValue);

}  // namespace dialcraft
