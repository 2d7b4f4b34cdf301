#include "base/utf8_step.h"

namespace dialcraft {

namespace {

bool in(unsigned char byte, unsigned char low, unsigned char high)
{
    return byte >= low && byte <= high;
}

}  // namespace

Utf8Step next_utf8(const unsigned char* p, const unsigned char* end)
{
    const unsigned char lead = p[0];
    if (lead < 0x80)
        return {lead, 1, true};
    int continuation = 0;
    unsigned char second_low = 0x80, second_high = 0xBF;
    char32_t code_point = 0;
    if (in(lead, 0xC2, 0xDF)) {
        continuation = 1;
        code_point = lead & 0x1F;
    } else if (in(lead, 0xE0, 0xEF)) {
        continuation = 2;
        code_point = lead & 0x0F;
        if (lead == 0xE0)
            second_low = 0xA0;  // no overlong forms
        else if (lead == 0xED)
            second_high = 0x9F;  // no surrogates
    } else if (in(lead, 0xF0, 0xF4)) {
        continuation = 3;
        code_point = lead & 0x07;
        if (lead == 0xF0)
            second_low = 0x90;
        else if (lead == 0xF4)
            second_high = 0x8F;  // nothing past U+10FFFF
    } else {
        return {0, 1, false};
    }
    int length = 1;
    for (int k = 0; k < continuation; ++k, ++length) {
        const unsigned char low = k == 0 ? second_low : 0x80;
        const unsigned char high = k == 0 ? second_high : 0xBF;
        if (p + length >= end || !in(p[length], low, high))
            return {0, length, false};
        code_point = (code_point << 6) | (p[length] & 0x3F);
    }
    return {code_point, length, true};
}

}  // namespace dialcraft
