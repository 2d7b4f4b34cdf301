#pragma once
// Integer texts: an optional single leading "+" or "-" followed by one or more
// digits of the radix and nothing else (no blanks, no prefix, no separators).
// The value, with its sign, must fit the target type.
#include <QStringView>

#include <cstdint>
#include <optional>

std::optional<int64_t> parse_int64(QStringView text, int radix = 10);
std::optional<uint64_t> parse_uint_max(QStringView text, int radix, uint64_t max);

inline std::optional<uint32_t> parse_uint32(QStringView text, int radix)
{
    auto v = parse_uint_max(text, radix, UINT32_MAX);
    return v ? std::optional<uint32_t>(static_cast<uint32_t>(*v)) : std::nullopt;
}

inline std::optional<uint8_t> parse_uint8(QStringView text, int radix)
{
    auto v = parse_uint_max(text, radix, UINT8_MAX);
    return v ? std::optional<uint8_t>(static_cast<uint8_t>(*v)) : std::nullopt;
}
