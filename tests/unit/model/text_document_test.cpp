#include <gtest/gtest.h>

#include "qt_printers.h"

#include "model/text_document.h"

using namespace dialcraft;

namespace {

const QChar fffd(0xFFFD);

QString decode(const QByteArray& bytes)
{
    return TextDocument::fromBytes(bytes).text;
}

TEST(TextDocumentTest, DefaultsToEmptyText)
{
    EXPECT_EQ(TextDocument{}.text, "");
    EXPECT_EQ(decode(QByteArray()), "");
}

TEST(TextDocumentTest, DecodesUtf8)
{
    EXPECT_EQ(decode("Note On\n1\n60"), "Note On\n1\n60");
    EXPECT_EQ(decode(QStringLiteral("选择消息类型 é 🎛").toUtf8()),
              QStringLiteral("选择消息类型 é 🎛"));
    EXPECT_EQ(decode(QByteArray("a\0b", 3)), QString("a") + QChar(0) + "b");
}

TEST(TextDocumentTest, ByteOrderMarkIsKeptAsACharacter)
{
    EXPECT_EQ(decode("\xef\xbb\xbfNote On"), QString(QChar(0xFEFF)) + "Note On");
}

TEST(TextDocumentTest, EachIllFormedSubpartBecomesOneReplacementCharacter)
{
    struct Case {
        QByteArray bytes;
        QString text;
    };
    const Case cases[] = {
        {"\xff", QString(fffd)},
        {"a\xfe\xff"
         "b",
         "a" + QString(2, fffd) + "b"},
        {"a\xe4\xb8"
         "b",
         "a" + QString(fffd) + "b"},                            // truncated 3-byte sequence
        {"\xf0\x9f\x8e", QString(fffd)},                        // truncated at the end
        {"\xc0\xaf", QString(2, fffd)},                         // overlong
        {"\xe0\x80\xaf", QString(3, fffd)},                     // overlong 3-byte form
        {"\xed\xa0\x80", QString(3, fffd)},                     // encoded surrogate
        {"\xf4\x90\x80\x80", QString(4, fffd)},                 // past U+10FFFF
        {"\x80\xbf", QString(2, fffd)},                         // lone continuation bytes
        {"\xe4\xb8\xad\xe4\xb8", QStringLiteral("中") + fffd},  // good then torn
        {"\xf5\x80", QString(2, fffd)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(decode(c.bytes), c.text) << c.bytes.toHex().toStdString();
}

TEST(TextDocumentTest, BinaryDataNeverFails)
{
    QByteArray bytes;
    for (int round = 0; round < 64; ++round)
        for (int b = 0; b < 256; ++b)
            bytes.append(char((b * 7 + round) & 0xff));
    const QString text = decode(bytes);
    EXPECT_FALSE(text.isEmpty());
    EXPECT_TRUE(text.isValidUtf16());
    EXPECT_TRUE(text.contains(QChar(0xFFFD)));
    // Valid UTF-8 comes back unchanged.
    EXPECT_EQ(decode(text.toUtf8()), text);
}

TEST(TextDocumentTest, WritesUtf8AsItStands)
{
    EXPECT_EQ(TextDocument{"Note On\n1\n60"}.toBytes(), QByteArray("Note On\n1\n60"));
    EXPECT_EQ(TextDocument{QStringLiteral("中")}.toBytes(), QByteArray("\xe4\xb8\xad"));
    EXPECT_EQ(TextDocument{""}.toBytes(), QByteArray());
    EXPECT_EQ(TextDocument{"a\r\nb\n"}.toBytes(), QByteArray("a\r\nb\n"));
}

}  // namespace
