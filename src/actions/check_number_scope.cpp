#include "actions/check_number_scope.h"

#include "base/integer_text.h"

namespace dialcraft {

int64_t CheckNumberScope(const QString& data, int64_t minValue, int64_t maxValue)
{
    return number_in_scope(data.toStdString(), minValue, maxValue);
}

}  // namespace dialcraft
