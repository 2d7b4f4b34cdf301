#pragma once
// One step of UTF-8 decoding, used by the text-file reader.
#include <cstdint>

namespace dialcraft {

struct Utf8Step {
    char32_t code_point;  // valid only when `valid`
    int length;           // bytes consumed; for an ill-formed sequence, its maximal subpart (at least 1)
    bool valid;
};

// Decodes the sequence starting at `p` (p < end). Overlong forms, surrogates
// and values past U+10FFFF are ill-formed.
Utf8Step next_utf8(const unsigned char* p, const unsigned char* end);

}  // namespace dialcraft
