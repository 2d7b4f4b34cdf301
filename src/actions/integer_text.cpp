#include "actions/integer_text.h"

namespace {

int digit_value(QChar c, int radix)
{
    char16_t u = c.unicode();
    int v = -1;
    if (u >= '0' && u <= '9')
        v = u - '0';
    else if (u >= 'a' && u <= 'z')
        v = u - 'a' + 10;
    else if (u >= 'A' && u <= 'Z')
        v = u - 'A' + 10;
    return v < radix ? v : -1;
}

// Splits off the sign and accumulates the magnitude; nullopt when the text
// breaks the rule or the magnitude exceeds `limit`.
std::optional<uint64_t> magnitude(QStringView text, int radix, uint64_t limit, bool* negative)
{
    *negative = false;
    if (!text.isEmpty() && (text.front() == u'+' || text.front() == u'-')) {
        *negative = text.front() == u'-';
        text = text.mid(1);
    }
    if (text.isEmpty())
        return std::nullopt;
    uint64_t value = 0;
    for (QChar c : text) {
        int d = digit_value(c, radix);
        if (d < 0)
            return std::nullopt;
        if (value > (limit - static_cast<uint64_t>(d)) / static_cast<uint64_t>(radix))
            return std::nullopt;
        value = value * static_cast<uint64_t>(radix) + static_cast<uint64_t>(d);
    }
    return value;
}

}  // namespace

std::optional<int64_t> parse_int64(QStringView text, int radix)
{
    bool negative = false;
    // The magnitude of INT64_MIN is one more than INT64_MAX.
    auto m = magnitude(text, radix, static_cast<uint64_t>(INT64_MAX) + 1, &negative);
    if (!m)
        return std::nullopt;
    if (!negative) {
        if (*m > static_cast<uint64_t>(INT64_MAX))
            return std::nullopt;
        return static_cast<int64_t>(*m);
    }
    return *m == static_cast<uint64_t>(INT64_MAX) + 1 ? INT64_MIN : -static_cast<int64_t>(*m);
}

std::optional<uint64_t> parse_uint_max(QStringView text, int radix, uint64_t max)
{
    bool negative = false;
    auto m = magnitude(text, radix, max, &negative);
    if (!m)
        return std::nullopt;
    // An unsigned parse takes "-0" but no other negative value.
    if (negative && *m != 0)
        return std::nullopt;
    return m;
}
