#include "actions/check_number_scope.h"

#include "actions/integer_text.h"

int64_t CheckNumberScope(const QString& data, int64_t minValue, int64_t maxValue)
{
    const int64_t value = parse_int64(data, 10).value_or(255);
    return minValue <= value && value <= maxValue ? 1 : 0;
}
