// The integer text rule, decimal and hexadecimal, against a plain reference:
// one optional sign, then only digits of the radix, the value within the
// target type's range ("-0" counting as zero for the unsigned ones).
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/integer_text.h"
#include "fuzz_check.h"

using namespace dialcraft;

namespace {

struct Reference {
    bool well_formed = false;
    bool negative = false;
    bool beyond_64_bits = false;
    uint64_t magnitude = 0;
};

int digit_value(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z')
        return c - 'A' + 10;
    return 99;
}

Reference read_reference(std::string_view text, int radix)
{
    Reference r;
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        r.negative = text[i] == '-';
        ++i;
    }
    if (i == text.size())
        return r;
    for (; i < text.size(); ++i) {
        const int digit = digit_value(text[i]);
        if (digit >= radix)
            return r;
        if (r.magnitude > (UINT64_MAX - uint64_t(digit)) / uint64_t(radix))
            r.beyond_64_bits = true;
        else
            r.magnitude = r.magnitude * uint64_t(radix) + uint64_t(digit);
    }
    r.well_formed = true;
    return r;
}

std::optional<int64_t> expected_int64(const Reference& r)
{
    if (!r.well_formed || r.beyond_64_bits)
        return std::nullopt;
    if (!r.negative)
        return r.magnitude <= uint64_t(INT64_MAX) ? std::optional<int64_t>(int64_t(r.magnitude)) : std::nullopt;
    if (r.magnitude == uint64_t(INT64_MAX) + 1)
        return INT64_MIN;
    return r.magnitude <= uint64_t(INT64_MAX) ? std::optional<int64_t>(-int64_t(r.magnitude)) : std::nullopt;
}

std::optional<uint64_t> expected_unsigned(const Reference& r, uint64_t max)
{
    if (!r.well_formed || r.beyond_64_bits || r.magnitude > max || (r.negative && r.magnitude != 0))
        return std::nullopt;
    return r.magnitude;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const int radix : {10, 16}) {
        const Reference r = read_reference(text, radix);
        fuzz_require(parse_int64(text, radix) == expected_int64(r), "parse_int64 differs from the reference");
        fuzz_require(parse_uint_max(text, radix, UINT64_MAX) == expected_unsigned(r, UINT64_MAX),
                     "parse_uint_max differs from the reference");
        const auto u32 = expected_unsigned(r, UINT32_MAX);
        fuzz_require(parse_uint32(text, radix) == (u32 ? std::optional<uint32_t>(uint32_t(*u32)) : std::nullopt),
                     "parse_uint32 differs from the reference");
        const auto u8 = expected_unsigned(r, UINT8_MAX);
        fuzz_require(parse_uint8(text, radix) == (u8 ? std::optional<uint8_t>(uint8_t(*u8)) : std::nullopt),
                     "parse_uint8 differs from the reference");
    }
    // The range checks of the knob fields: a text that does not parse counts as 255.
    const int64_t value = expected_int64(read_reference(text, 10)).value_or(255);
    fuzz_require(number_in_scope(text, 1, 16) == (value >= 1 && value <= 16), "channel range check");
    fuzz_require(number_in_scope(text, 0, 127) == (value >= 0 && value <= 127), "controller range check");
    fuzz_require(number_in_scope(text, 0, 255) == (value >= 0 && value <= 255), "range holding 255");
    return 0;
}
