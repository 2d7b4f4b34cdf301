#include <gtest/gtest.h>

#include "actions/check_number_scope.h"
#include "base/integer_text.h"

using namespace dialcraft;

TEST(CheckNumberScope, ChannelRange)
{
    for (const char* ok : {"1", "16", "+5", "05", "016", "-0016"})
        EXPECT_EQ(CheckNumberScope(ok, 1, 16), QString(ok).startsWith('-') ? 0 : 1) << ok;
    for (const char* bad :
         {"", "0", "17", "-3", " 5", "5 ", "1.0", "0x1", "99999999999999999999", "+", "-", "++1", "1_0", "１"})
        EXPECT_EQ(CheckNumberScope(QString::fromUtf8(bad), 1, 16), 0) << bad;
}

TEST(CheckNumberScope, ControllerRange)
{
    for (const char* ok : {"0", "-0", "127", "+0", "0000127"})
        EXPECT_EQ(CheckNumberScope(ok, 0, 127), 1) << ok;
    for (const char* bad : {"128", "abc", "-1", "7f"})
        EXPECT_EQ(CheckNumberScope(bad, 0, 127), 0) << bad;
}

TEST(CheckNumberScope, UnparseableTextCountsAs255)
{
    EXPECT_EQ(CheckNumberScope("abc", 0, 300), 1);
    EXPECT_EQ(CheckNumberScope("", 255, 255), 1);
    EXPECT_EQ(CheckNumberScope("99999999999999999999", 0, 300), 1);
    EXPECT_EQ(CheckNumberScope("abc", 0, 254), 0);
}

TEST(CheckNumberScope, Int64Limits)
{
    EXPECT_EQ(parse_int64("9223372036854775807"), INT64_MAX);
    EXPECT_EQ(parse_int64("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(parse_int64("9223372036854775808"), std::nullopt);
    EXPECT_EQ(parse_int64("-9223372036854775809"), std::nullopt);
}

TEST(IntegerText, HexadecimalUnsigned)
{
    EXPECT_EQ(parse_uint32("a", 16), 10u);
    EXPECT_EQ(parse_uint32("F", 16), 15u);
    EXPECT_EQ(parse_uint32("FFFFFFFF", 16), 0xFFFFFFFFu);
    EXPECT_EQ(parse_uint32("100000000", 16), std::nullopt);
    EXPECT_EQ(parse_uint32("", 16), std::nullopt);
    EXPECT_EQ(parse_uint32("G", 16), std::nullopt);
    EXPECT_EQ(parse_uint32("-1", 16), std::nullopt);
    EXPECT_EQ(parse_uint8("ff", 16), 255);
    EXPECT_EQ(parse_uint8("100", 16), std::nullopt);
    EXPECT_EQ(parse_uint8("-0", 16), 0);
}
