#pragma once
// Integer texts: an optional single leading "+" or "-" followed by one or more
// digits of the radix and nothing else (no blanks, no prefix, no separators).
// The value, with its sign, must fit the target type. Texts are bytes: any
// byte outside the radix's ASCII digits breaks the rule.
#include <cstdint>
#include <optional>
#include <string_view>

namespace dialcraft {

std::optional<int64_t> parse_int64(std::string_view text, int radix = 10);
// An unsigned parse up to `max`; "-0" is zero, any other negative fails.
std::optional<uint64_t> parse_uint_max(std::string_view text, int radix, uint64_t max);

inline std::optional<uint32_t> parse_uint32(std::string_view text, int radix)
{
    auto v = parse_uint_max(text, radix, UINT32_MAX);
    return v ? std::optional<uint32_t>(static_cast<uint32_t>(*v)) : std::nullopt;
}

inline std::optional<uint8_t> parse_uint8(std::string_view text, int radix)
{
    auto v = parse_uint_max(text, radix, UINT8_MAX);
    return v ? std::optional<uint8_t>(static_cast<uint8_t>(*v)) : std::nullopt;
}

// The range check of a typed decimal number: 1 when `text` is a decimal
// integer text within [min_value, max_value], else 0. A text that does not
// parse counts as 255, so it passes any range holding 255.
int64_t number_in_scope(std::string_view text, int64_t min_value, int64_t max_value);

}  // namespace dialcraft
