// The stored table's JSON: the decoder takes any bytes without crashing, and
// encoding then decoding gives back exactly the strings that were encoded,
// both for what the decoder accepted and for strings made from the input
// (every character a string may hold, U+FEFF at any position included).
#include <cstddef>
#include <cstdint>

#include <QByteArray>
#include <QStringList>

#include "fuzz_check.h"
#include "model/configuration_json.h"
#include "model/text_document.h"

using namespace dialcraft;

namespace {

// The input cut at every zero byte, each piece read as UTF-8 with invalid
// sequences replaced. The decoding keeps a leading U+FEFF as a character.
QStringList strings_of(const QByteArray& bytes)
{
    QStringList strings;
    for (const QByteArray& piece : bytes.split('\0'))
        strings.append(TextDocument::fromBytes(piece).text);
    return strings;
}

void require_compact_form(const QByteArray& encoded)
{
    fuzz_require(encoded.startsWith("{\"settings\":[") && encoded.endsWith("]}"), "encoded form is compact JSON");
    fuzz_require(!encoded.contains('\n') && !encoded.startsWith("\xEF\xBB\xBF"), "no line break, no byte-order mark");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));

    QString error;
    if (const auto decoded = decode_configuration(bytes, &error)) {
        const QByteArray encoded = encode_configuration(*decoded);
        require_compact_form(encoded);
        const auto again = decode_configuration(encoded);
        fuzz_require(again && again->settings == decoded->settings, "decode(encode(x)) == x for a decoded table");
        fuzz_require(encode_configuration(*again) == encoded, "encoding a decoded table again gives the same bytes");
    } else {
        fuzz_require(!error.isEmpty(), "a refused input says why");
    }

    const Configuration strings{strings_of(bytes)};
    const QByteArray encoded = encode_configuration(strings);
    require_compact_form(encoded);
    const auto back = decode_configuration(encoded);
    fuzz_require(back.has_value(), "an encoded table decodes");
    fuzz_require(back->settings == strings.settings, "decode(encode(x)) == x for strings of the input");
    return 0;
}
