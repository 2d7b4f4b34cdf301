// An imported file: its bytes decoded as UTF-8 (invalid sequences replaced),
// then split into slots by reverseUpdateDocument. Both are checked against
// references written differently: Qt's own decoder for valid UTF-8, and a
// split that cuts at every line feed and joins back the pieces a CR LF cut.
#include <cstddef>
#include <cstdint>
#include <string>

#include <QByteArray>
#include <QStringDecoder>
#include <QStringList>

#include "fuzz_check.h"
#include "model/config_file_transfer.h"
#include "model/configuration.h"
#include "model/text_document.h"

using namespace dialcraft;

namespace {

QStringList reference_slots(const QString& text)
{
    QStringList pieces;
    for (const QString& part : text.split(u'\n')) {
        // The line feed before `part` followed a carriage return: CR LF is
        // one character, so it never cut there.
        if (!pieces.isEmpty() && pieces.last().endsWith(u'\r'))
            pieces.last() += u'\n' + part;
        else
            pieces.append(part);
    }
    pieces.removeAll(QString());
    while (pieces.size() < 300)
        pieces.append(QString(20, u' '));
    return pieces;
}

bool well_formed_utf16(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate()) {
            if (i + 1 >= text.size() || !text[i + 1].isLowSurrogate())
                return false;
            ++i;
        } else if (text[i].isLowSurrogate()) {
            return false;
        }
    }
    return true;
}

CollectedLines printed;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    set_console_sink(&printed);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString text = TextDocument::fromBytes(bytes).text;
    fuzz_require(well_formed_utf16(text), "decoded text is well-formed UTF-16");
    // Valid UTF-8 is exactly what Qt decodes (a byte-order mark kept as a
    // character) and is written back byte for byte.
    QStringDecoder qt_utf8(QStringDecoder::Utf8,
                           QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    const QString by_qt = qt_utf8(bytes);
    if (!qt_utf8.hasError()) {
        fuzz_require(text == by_qt, "valid UTF-8 decodes as Qt does");
        fuzz_require(TextDocument{text}.toBytes() == bytes, "valid UTF-8 is written back unchanged");
    } else {
        fuzz_require(text.contains(QChar(0xFFFD)), "invalid UTF-8 leaves a replacement character");
    }

    ConfigFileTransfer transfer;
    transfer.document.text = text;
    printed.clear();
    transfer.reverseUpdateDocument();
    const QStringList expected = reference_slots(text);
    fuzz_require(configuration.settings == expected, "slots differ from the reference split");
    fuzz_require(printed.has_line("Updated configuration.settings count: " + std::to_string(expected.size())),
                 "the count line names the new number of slots");
    return 0;
}
