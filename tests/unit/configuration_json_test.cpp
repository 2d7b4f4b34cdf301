#include <gtest/gtest.h>

#include "qt_printers.h"

#include "model/configuration.h"
#include "model/configuration_json.h"

namespace {

QByteArray encode(const QStringList& settings)
{
    return encode_configuration(Configuration{settings});
}

TEST(ConfigurationJsonTest, WorkedExampleIsCompact)
{
    EXPECT_EQ(encode({"Control Change", "2", "74"}), QByteArray(R"({"settings":["Control Change","2","74"]})"));
}

TEST(ConfigurationJsonTest, EmptyTable)
{
    EXPECT_EQ(encode({}), QByteArray(R"({"settings":[]})"));
    EXPECT_EQ(encode({""}), QByteArray(R"({"settings":[""]})"));
}

TEST(ConfigurationJsonTest, FreshTableIsNinetyStringsOfTwentySpaces)
{
    QByteArray expected = "{\"settings\":[";
    for (int i = 0; i < 90; ++i) {
        if (i > 0)
            expected += ',';
        expected += "\"                    \"";
    }
    expected += "]}";
    EXPECT_EQ(encode_configuration(Configuration{initialSettings()}), expected);
    EXPECT_EQ(expected.size(), 13 + 90 * 22 + 89 + 2);
}

TEST(ConfigurationJsonTest, SolidusIsEscaped)
{
    EXPECT_EQ(encode({"a/b", "/"}), QByteArray(R"({"settings":["a\/b","\/"]})"));
}

TEST(ConfigurationJsonTest, QuoteBackslashAndControlCharactersAreEscaped)
{
    const QString text = QStringLiteral("q\"b\\s\bf\fn\nr\rt\t") + QChar(0) + QChar(1) + QChar(0x1b) + QChar(0x1f) +
                         QChar(0x20) + QChar(0x7f);
    EXPECT_EQ(encode({text}),
              QByteArray("{\"settings\":[\"q\\\"b\\\\s\\bf\\fn\\nr\\rt\\t\\u0000\\u0001\\u001b\\u001f \x7f\"]}"));
}

TEST(ConfigurationJsonTest, NonAsciiIsWrittenAsRawUtf8)
{
    const QString text = QStringLiteral("选择消息类型é🎛");
    const QByteArray expected = "{\"settings\":[\"" + text.toUtf8() + "\"]}";
    EXPECT_EQ(encode({text}), expected);
    EXPECT_TRUE(expected.contains("\xe9\x80\x89\xe6\x8b\xa9"));  // 选择 as UTF-8 bytes
    EXPECT_FALSE(expected.contains("\\u"));
    EXPECT_FALSE(expected.startsWith("\xef\xbb\xbf"));
}

TEST(ConfigurationJsonTest, EverythingEncodedDecodesBackUnchanged)
{
    QStringList settings{"Note On", "", "  ", "a/b\\c\"d", QStringLiteral("选择消息类型"), "\r\n", "\t\b\f",
                         QString(QChar(1)), QStringLiteral("🎛"), "05"};
    for (int c = 0; c < 0x80; ++c)
        settings.append(QString(QChar(c)));
    const std::optional<Configuration> decoded = decode_configuration(encode(settings));
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->settings, settings);
}

TEST(ConfigurationJsonTest, OtherMembersAreIgnored)
{
    const auto decoded = decode_configuration(R"({"settings":["x"],"extra":1})");
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->settings, QStringList{"x"});
    const auto before = decode_configuration(R"({"a":{"b":[1,2,null]},"settings":["y","z"]})");
    ASSERT_TRUE(before.has_value());
    EXPECT_EQ(before->settings, (QStringList{"y", "z"}));
}

TEST(ConfigurationJsonTest, WhitespaceBetweenTokensIsAccepted)
{
    const auto decoded = decode_configuration(" {\n \"settings\" : [ \"a\" , \"b\" ] }\n");
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->settings, (QStringList{"a", "b"}));
}

struct Rejected {
    const char* name;
    QByteArray bytes;
    QString error;
};

TEST(ConfigurationJsonTest, RejectsAnythingButAnArrayOfStrings)
{
    const Rejected cases[] = {
        {"no settings member", R"({"setting":[]})", R"(No value associated with key "settings".)"},
        {"empty object", "{}", R"(No value associated with key "settings".)"},
        {"settings is a string", R"({"settings":"Note On"})", R"(Expected an array of strings for key "settings".)"},
        {"settings is null", R"({"settings":null})", R"(Expected an array of strings for key "settings".)"},
        {"settings is an object", R"({"settings":{"0":"a"}})", R"(Expected an array of strings for key "settings".)"},
        {"number inside", R"({"settings":["a",1]})", R"(Expected a string at "settings" index 1.)"},
        {"null inside", R"({"settings":[null]})", R"(Expected a string at "settings" index 0.)"},
        {"nested array", R"({"settings":[["a"]]})", R"(Expected a string at "settings" index 0.)"},
        {"top-level array", R"(["a","b"])", "Expected a JSON object at the top level."},
    };
    for (const Rejected& c : cases) {
        QString error;
        EXPECT_FALSE(decode_configuration(c.bytes, &error).has_value()) << c.name;
        EXPECT_EQ(error, c.error) << c.name;
    }
}

TEST(ConfigurationJsonTest, RejectsBytesThatAreNotJson)
{
    const Rejected cases[] = {
        {"empty", "", "The data is not valid JSON: unexpected end of data at offset 0."},
        {"text", "not json", "The data is not valid JSON: invalid literal at offset 1."},
        {"truncated", R"({"settings":["a")", "The data is not valid JSON: expected ',' or ']' at offset 16."},
        {"truncated string", R"({"settings":["a)", "The data is not valid JSON: unterminated string at offset 15."},
        {"trailing text", R"({"settings":["a"]} x)", "The data is not valid JSON: unexpected data after the end at offset 19."},
        {"binary", QByteArray("\x00\x01\x02\xff\xfe", 5), "The data is not valid JSON: unexpected character at offset 0."},
        {"not UTF-8 in a string", "{\"settings\":[\"\xff\xfe\"]}",
         "The data is not valid JSON: invalid UTF-8 in string at offset 14."},
        {"encoded surrogate", "{\"settings\":[\"\xed\xa0\x80\"]}",
         "The data is not valid JSON: invalid UTF-8 in string at offset 14."},
        {"overlong UTF-8", "{\"settings\":[\"\xc0\xaf\"]}",
         "The data is not valid JSON: invalid UTF-8 in string at offset 14."},
        {"unknown escape", R"({"settings":["\x"]})", "The data is not valid JSON: invalid escape at offset 15."},
        {"short escape", R"({"settings":["\u12"]})", "The data is not valid JSON: invalid \\u escape at offset 18."},
        {"lone high surrogate", R"({"settings":["\ud800"]})",
         "The data is not valid JSON: unpaired surrogate escape at offset 20."},
        {"lone low surrogate", R"({"settings":["\udc00x"]})",
         "The data is not valid JSON: unpaired surrogate escape at offset 20."},
        {"raw control character", "{\"settings\":[\"a\tb\"]}",
         "The data is not valid JSON: control character in string at offset 15."},
        {"trailing comma", R"({"settings":["a",]})", "The data is not valid JSON: unexpected character at offset 17."},
        {"single quotes", "{'settings':[]}", "The data is not valid JSON: expected a member name at offset 1."},
        {"missing comma", R"({"settings":["a"] "x":1})", "The data is not valid JSON: expected ',' or '}' at offset 18."},
        {"number without digits after the point", R"({"n":1.,"settings":[]})",
         "The data is not valid JSON: invalid number at offset 7."},
        {"number starting with a point", R"({"n":.5,"settings":[]})",
         "The data is not valid JSON: unexpected character at offset 5."},
        {"leading zero", R"({"n":01,"settings":[]})", "The data is not valid JSON: expected ',' or '}' at offset 6."},
        {"nan", R"({"n":nan,"settings":[]})", "The data is not valid JSON: invalid literal at offset 6."},
        {"too deep", QByteArray(1 << 20, '['), "The data is not valid JSON: too deeply nested at offset 512."},
    };
    for (const Rejected& c : cases) {
        QString error;
        EXPECT_FALSE(decode_configuration(c.bytes, &error).has_value()) << c.name;
        EXPECT_EQ(error, c.error) << c.name;
    }
}

TEST(ConfigurationJsonTest, SyntaxIsCheckedBeforeTheShape)
{
    QString error;
    EXPECT_FALSE(decode_configuration(R"({"settings":5,"x":[})", &error).has_value());
    EXPECT_EQ(error, "The data is not valid JSON: unexpected character at offset 19.");
}

TEST(ConfigurationJsonTest, AcceptsWhatStrictJsonAllows)
{
    struct Accepted {
        QByteArray bytes;
        QStringList settings;
    };
    const Accepted cases[] = {
        {"\xef\xbb\xbf{\"settings\":[\"a\"]}", {"a"}},  // byte-order mark
        {R"({"settings":["\u00e9\ud83c\udf9b\u0041\/\b"]})", {QStringLiteral("éA/\b").insert(1, QStringLiteral("🎛"))}},
        {R"({"n":[-0.5e+10,1E-2,0,true,false,null,{}],"settings":[]})", {}},
        {R"({"settings":5,"settings":["last"]})", {"last"}},  // a repeated member replaces the earlier one
        {R"({"x":{"settings":5},"settings":["top"]})", {"top"}},
    };
    for (const Accepted& c : cases) {
        QString error;
        const auto decoded = decode_configuration(c.bytes, &error);
        ASSERT_TRUE(decoded.has_value()) << c.bytes.toStdString() << " " << error.toStdString();
        EXPECT_EQ(decoded->settings, c.settings) << c.bytes.toStdString();
    }
    QString error;
    EXPECT_FALSE(decode_configuration(R"({"x":{"settings":["nested"]}})", &error).has_value());
    EXPECT_EQ(error, R"(No value associated with key "settings".)");
    EXPECT_FALSE(decode_configuration(R"({"settings":["a"],"settings":7})", &error).has_value());
    EXPECT_EQ(error, R"(Expected an array of strings for key "settings".)");
}

TEST(ConfigurationJsonTest, HugeTablesRoundTrip)
{
    QStringList settings;
    for (int i = 0; i < 200000; ++i)
        settings.append(QString::number(i));
    const std::optional<Configuration> decoded = decode_configuration(encode(settings));
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->settings, settings);
}

}  // namespace
