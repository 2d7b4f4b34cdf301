#include "base/integer_text.h"

#include <charconv>

namespace dialcraft {

namespace {

struct SignedMagnitude {
    bool negative;
    uint64_t magnitude;
};

// Splits off the one optional sign and reads the digits that must make up
// the rest of the text; nullopt when the text breaks the rule or the
// magnitude does not fit 64 bits.
std::optional<SignedMagnitude> split_sign(std::string_view text, int radix)
{
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    // from_chars would take a second sign for itself; the rule allows one.
    if (text.empty() || text.front() == '+' || text.front() == '-')
        return std::nullopt;
    uint64_t magnitude = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, magnitude, radix);
    if (error != std::errc{} || stop != end)
        return std::nullopt;
    return SignedMagnitude{negative, magnitude};
}

}  // namespace

std::optional<int64_t> parse_int64(std::string_view text, int radix)
{
    const auto parsed = split_sign(text, radix);
    if (!parsed)
        return std::nullopt;
    constexpr uint64_t max_positive = static_cast<uint64_t>(INT64_MAX);
    if (!parsed->negative)
        return parsed->magnitude <= max_positive ? std::optional<int64_t>(static_cast<int64_t>(parsed->magnitude))
                                                 : std::nullopt;
    // The magnitude of INT64_MIN is one more than INT64_MAX.
    if (parsed->magnitude == max_positive + 1)
        return INT64_MIN;
    if (parsed->magnitude > max_positive)
        return std::nullopt;
    return -static_cast<int64_t>(parsed->magnitude);
}

std::optional<uint64_t> parse_uint_max(std::string_view text, int radix, uint64_t max)
{
    const auto parsed = split_sign(text, radix);
    if (!parsed || parsed->magnitude > max)
        return std::nullopt;
    if (parsed->negative && parsed->magnitude != 0)
        return std::nullopt;
    return parsed->magnitude;
}

int64_t number_in_scope(std::string_view text, int64_t min_value, int64_t max_value)
{
    const int64_t value = parse_int64(text, 10).value_or(255);
    return min_value <= value && value <= max_value ? 1 : 0;
}

}  // namespace dialcraft
