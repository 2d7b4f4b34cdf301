#include <gtest/gtest.h>

#include "qt_printers.h"

#include "model/list_notation.h"

using namespace dialcraft;

namespace {

TEST(ListNotationTest, QuotesEachStringAndSeparatesWithCommaAndBlank)
{
    EXPECT_EQ(list_notation({}), "[]");
    EXPECT_EQ(list_notation({"Note On"}), R"(["Note On"])");
    EXPECT_EQ(list_notation({"Note On", "1", "60", "", "                    "}),
              R"(["Note On", "1", "60", "", "                    "])");
    EXPECT_EQ(list_notation({QStringLiteral("选择消息类型"), "a/b"}), QStringLiteral(R"(["选择消息类型", "a/b"])"));
}

TEST(ListNotationTest, EscapesSoThatTheListStaysOnOneLine)
{
    EXPECT_EQ(list_notation({"a\r\nb\r\n"}), R"(["a\r\nb\r\n"])");
    EXPECT_EQ(list_notation({"q\"b\\t\tn"}), R"(["q\"b\\t\tn"])");
    EXPECT_EQ(list_notation({"it's"}), R"(["it\'s"])");
    EXPECT_EQ(list_notation({QString(QChar(0)) + QChar(0x1b) + QChar(0x7f) + QChar(0x1f)}),
              R"(["\0\u{1b}\u{7f}\u{1f}"])");
    EXPECT_EQ(list_notation({QString(QChar(0xFFFD))}), QString("[\"") + QChar(0xFFFD) + "\"]");
}

}  // namespace
