#include <gtest/gtest.h>

#include "qt_printers.h"
#include "random_text.h"

#include <string>

#include "model/configuration.h"
#include "model/configuration_json.h"

using namespace dialcraft;

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
    QStringList settings{"Note On",
                         "",
                         "  ",
                         "a/b\\c\"d",
                         QStringLiteral("选择消息类型"),
                         "\r\n",
                         "\t\b\f",
                         QString(QChar(1)),
                         QStringLiteral("🎛"),
                         "05"};
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
        {"top-level string", R"("settings")", "Expected a JSON object at the top level."},
        {"top-level number", "90", "Expected a JSON object at the top level."},
        {"top-level null", "null", "Expected a JSON object at the top level."},
        {"key in another case", R"({"Settings":["a"]})", R"(No value associated with key "settings".)"},
        {"key with a blank", R"({"settings ":["a"]})", R"(No value associated with key "settings".)"},
        {"settings is true", R"({"settings":true})", R"(Expected an array of strings for key "settings".)"},
        {"settings is a number", R"({"settings":3})", R"(Expected an array of strings for key "settings".)"},
        {"object inside", R"({"settings":["a","b",{}]})", R"(Expected a string at "settings" index 2.)"},
        {"false inside", R"({"settings":[false,"a"]})", R"(Expected a string at "settings" index 0.)"},
    };
    for (const Rejected& c : cases) {
        QString error;
        EXPECT_FALSE(decode_configuration(c.bytes, &error).has_value()) << c.name;
        EXPECT_EQ(error, c.error) << c.name;
    }
}

// The library words syntax errors; the decoder only promises to say that the
// bytes are not JSON, which tells them apart from a wrongly shaped table.
const QString not_json = QStringLiteral("The data is not valid JSON: ");

void expect_not_json(const QByteArray& bytes, const char* name)
{
    QString error;
    EXPECT_FALSE(decode_configuration(bytes, &error).has_value()) << name;
    EXPECT_TRUE(error.startsWith(not_json)) << name << ": " << error.toStdString();
    EXPECT_GT(error.size(), not_json.size()) << name;
}

TEST(ConfigurationJsonTest, RejectsBytesThatAreNotJson)
{
    const struct {
        const char* name;
        QByteArray bytes;
    } cases[] = {
        {"empty", ""},
        {"text", "not json"},
        {"truncated", R"({"settings":["a")"},
        {"truncated string", R"({"settings":["a)"},
        {"trailing text", R"({"settings":["a"]} x)"},
        {"binary", QByteArray("\x00\x01\x02\xff\xfe", 5)},
        {"not UTF-8 in a string", "{\"settings\":[\"\xff\xfe\"]}"},
        {"encoded surrogate", "{\"settings\":[\"\xed\xa0\x80\"]}"},
        {"overlong UTF-8", "{\"settings\":[\"\xc0\xaf\"]}"},
        {"unknown escape", R"({"settings":["\x"]})"},
        {"short escape", R"({"settings":["\u12"]})"},
        {"lone high surrogate", R"({"settings":["\ud800"]})"},
        {"lone low surrogate", R"({"settings":["\udc00x"]})"},
        {"raw control character", "{\"settings\":[\"a\tb\"]}"},
        {"trailing comma", R"({"settings":["a",]})"},
        {"single quotes", "{'settings':[]}"},
        {"missing comma", R"({"settings":["a"] "x":1})"},
        {"number without digits after the point", R"({"n":1.,"settings":[]})"},
        {"number starting with a point", R"({"n":.5,"settings":[]})"},
        {"leading zero", R"({"n":01,"settings":[]})"},
        {"nan", R"({"n":nan,"settings":[]})"},
        {"deep and unterminated", QByteArray(1 << 20, '[')},
    };
    for (const auto& c : cases)
        expect_not_json(c.bytes, c.name);
}

TEST(ConfigurationJsonTest, SyntaxIsCheckedBeforeTheShape)
{
    expect_not_json(R"({"settings":5,"x":[})", "wrong shape and broken syntax");
}

TEST(ConfigurationJsonTest, RawControlCharactersInStringsAreRefused)
{
    for (int c = 0; c < 0x20; ++c) {
        const std::string name = "raw control character " + std::to_string(c);
        expect_not_json(QByteArray("{\"settings\":[\"a") + char(c) + "b\"]}", name.c_str());
        expect_not_json(QByteArray("{\"x\":\"") + char(c) + "\",\"settings\":[]}", name.c_str());
        // Escaped, the same character is fine.
        const QByteArray escaped = QStringLiteral("{\"settings\":[\"a\\u%1b\"]}").arg(c, 4, 16, QChar('0')).toLatin1();
        const auto decoded = decode_configuration(escaped);
        ASSERT_TRUE(decoded.has_value()) << escaped.toStdString();
        EXPECT_EQ(decoded->settings, QStringList{QStringLiteral("a") + QChar(c) + QStringLiteral("b")});
    }
    const auto del = decode_configuration("{\"settings\":[\"a\x7f\"]}");
    ASSERT_TRUE(del.has_value());
    EXPECT_EQ(del->settings, QStringList{QStringLiteral("a") + QChar(0x7f)});
}

TEST(ConfigurationJsonTest, UnpairedSurrogatesAreRefused)
{
    const struct {
        const char* name;
        QByteArray bytes;
    } cases[] = {
        {"high at the end", R"({"settings":["a\ud83c"]})"},
        {"high before a letter", R"({"settings":["\ud83cx"]})"},
        {"high before a non-surrogate escape", R"({"settings":["\ud83c\u0041"]})"},
        {"two highs", R"({"settings":["\ud83c\ud83c"]})"},
        {"low alone", R"({"settings":["\udf9b"]})"},
        {"low before high", R"({"settings":["\udf9b\ud83c"]})"},
        {"high in an ignored member", R"({"x":"\ud800","settings":[]})"},
        {"high in a member name", R"({"\ud800":1,"settings":[]})"},
        {"high as UTF-8", "{\"settings\":[\"\xed\xa0\xbc\"]}"},
        {"low as UTF-8", "{\"settings\":[\"\xed\xbe\x9b\"]}"},
        {"pair as UTF-8", "{\"settings\":[\"\xed\xa0\xbc\xed\xbe\x9b\"]}"},
    };
    for (const auto& c : cases)
        expect_not_json(c.bytes, c.name);
    // A proper pair, escaped or as four UTF-8 bytes, is one astral character.
    const auto decoded = decode_configuration("{\"settings\":[\"\\ud83c\\udf9b\",\"\xf0\x9f\x8e\x9b\"]}");
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->settings, (QStringList{QStringLiteral("🎛"), QStringLiteral("🎛")}));
}

TEST(ConfigurationJsonTest, TrailingBytesAreRefused)
{
    const QByteArray table = R"({"settings":["a"]})";
    const struct {
        const char* name;
        QByteArray tail;
    } cases[] = {
        {"a letter", "x"},
        {"a second object", "{}"},
        {"a comma", ","},
        {"a NUL byte", QByteArray(1, '\0')},
        {"a NUL byte and more JSON", QByteArray("\0{\"settings\":[]}", 16)},
        {"a byte-order mark", "\xef\xbb\xbf"},
        {"a stray closing bracket", "]"},
    };
    for (const auto& c : cases)
        expect_not_json(table + c.tail, c.name);
    const auto spaced = decode_configuration(table + " \t\r\n");
    ASSERT_TRUE(spaced.has_value());
    EXPECT_EQ(spaced->settings, QStringList{"a"});
}

TEST(ConfigurationJsonTest, RefusesWhatLenientReadersAccept)
{
    const struct {
        const char* name;
        QByteArray bytes;
    } cases[] = {
        {"block comment", R"(/* c */{"settings":[]})"},
        {"line comment", "{\"settings\":[]} // c"},
        {"unquoted key", "{settings:[]}"},
        {"single-quoted string", R"({"settings":['a']})"},
        {"trailing comma in an object", R"({"settings":[],})"},
        {"Infinity", R"({"n":Infinity,"settings":[]})"},
        {"hexadecimal number", R"({"n":0x10,"settings":[]})"},
        {"plus sign", R"({"n":+1,"settings":[]})"},
        {"capitalised literal", R"({"n":True,"settings":[]})"},
        {"byte-order mark after a blank", " \xef\xbb\xbf{\"settings\":[]}"},
        {"cut byte-order mark", "\xef\xbb{\"settings\":[]}"},
        {"UTF-16", QByteArray("\xff\xfe{\0}\0", 6)},
        {"raw line break in a string", "{\"settings\":[\"a\nb\"]}"},
        {"escaped single quote", R"({"settings":["\'"]})"},
    };
    for (const auto& c : cases)
        expect_not_json(c.bytes, c.name);
}

TEST(ConfigurationJsonTest, RepeatedSettingsMemberLastOneCounts)
{
    const struct {
        QByteArray bytes;
        QStringList settings;
    } accepted[] = {
        {R"({"settings":["a"],"settings":["b"]})", {"b"}},
        {R"({"settings":[1],"settings":["ok"]})", {"ok"}},
        {R"({"settings":"x","n":1,"settings":[]})", {}},
        {R"({"s\u0065ttings":["escaped name"]})", {"escaped name"}},
    };
    for (const auto& c : accepted) {
        QString error;
        const auto decoded = decode_configuration(c.bytes, &error);
        ASSERT_TRUE(decoded.has_value()) << c.bytes.toStdString() << " " << error.toStdString();
        EXPECT_EQ(decoded->settings, c.settings) << c.bytes.toStdString();
    }
    QString error;
    EXPECT_FALSE(decode_configuration(R"({"settings":["a"],"settings":[2]})", &error).has_value());
    EXPECT_EQ(error, R"(Expected a string at "settings" index 0.)");
}

// The parser keeps numbers as doubles and refuses one that does not fit,
// even in a member that is otherwise ignored.
TEST(ConfigurationJsonTest, NumbersBeyondADoubleAreRefused)
{
    expect_not_json(R"({"n":1e400,"settings":[]})", "1e400");
    expect_not_json(R"({"n":-1e400,"settings":[]})", "-1e400");
    for (const QByteArray& number :
         {QByteArray("123456789012345678901234567890"), QByteArray("1e308"), QByteArray("-0"), QByteArray("1e-400")}) {
        const auto decoded = decode_configuration(R"({"n":)" + number + R"(,"settings":["a"]})");
        ASSERT_TRUE(decoded.has_value()) << number.toStdString();
        EXPECT_EQ(decoded->settings, QStringList{"a"});
    }
}

// Nesting in other members has no limit of its own, and takes no stack.
TEST(ConfigurationJsonTest, DeepNestingInOtherMembersIsAccepted)
{
    const int depth = 200000;
    const QByteArray bytes = R"({"x":)" + QByteArray(depth, '[') + QByteArray(depth, ']') + R"(,"settings":["a"]})";
    const auto decoded = decode_configuration(bytes);
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->settings, QStringList{"a"});
}

// The description leaves out the library's echo of the input, which can be as
// long as the stored value and need not be UTF-8.
TEST(ConfigurationJsonTest, ErrorTextDoesNotRepeatTheStoredBytes)
{
    const QByteArray cases[] = {
        R"({"settings":[")" + QByteArray(1 << 20, 'x'),
        R"({"settings":[")" + QByteArray(1 << 20, 'x') + '\t',
        "{\"settings\":[\"" + QByteArray(1 << 16, 'x') + "\xff\"]}",
        R"({"n":1)" + QByteArray(1 << 16, '0') + R"(e999,"settings":[]})",
    };
    for (const QByteArray& bytes : cases) {
        QString error;
        EXPECT_FALSE(decode_configuration(bytes, &error).has_value());
        EXPECT_TRUE(error.startsWith(not_json)) << error.toStdString();
        EXPECT_LT(error.size(), 300) << error.left(300).toStdString();
        EXPECT_FALSE(error.contains(QStringLiteral("xxxx"))) << error.left(300).toStdString();
        EXPECT_FALSE(error.contains(QStringLiteral("0000"))) << error.left(300).toStdString();
        EXPECT_FALSE(error.contains(QChar(0xfffd))) << error.left(300).toStdString();
    }
}

TEST(ConfigurationJsonTest, AcceptsWhatStrictJsonAllows)
{
    struct Accepted {
        QByteArray bytes;
        QStringList settings;
    };
    const Accepted cases[] = {
        {"\xef\xbb\xbf{\"settings\":[\"a\"]}", {"a"}},  // byte-order mark
        {R"({"settings":["\u00e9\ud83c\udf9b\u0041\/\b"]})",
         {QStringLiteral("éA/\b").insert(1, QStringLiteral("🎛"))}},
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

// U+FEFF is an ordinary character inside a slot: a converter that drops a
// leading byte-order mark would turn a channel "\uFEFF5" into "5", which then
// passes its check.
TEST(ConfigurationJsonTest, ByteOrderMarkInsideStringsIsKept)
{
    const QString bom(QChar(0xFEFF));
    const struct {
        QByteArray bytes;
        QStringList settings;
    } cases[] = {
        {R"({"settings":["\ufeff5"]})", {bom + "5"}},
        {R"({"settings":["\uFEFF5"]})", {bom + "5"}},
        {R"({"settings":["5\ufeff5"]})", {"5" + bom + "5"}},
        {R"({"settings":["5\ufeff"]})", {"5" + bom}},
        {R"({"settings":["\ufeff"]})", {bom}},
        {R"({"settings":["\ufeff\ufeff"]})", {bom + bom}},
        {"{\"settings\":[\"\xef\xbb\xbf"
         "5\"]}",
         {bom + "5"}},
        {"{\"settings\":[\"5\xef\xbb\xbf"
         "5\"]}",
         {"5" + bom + "5"}},
        {"{\"settings\":[\"5\xef\xbb\xbf\"]}", {"5" + bom}},
        {"{\"settings\":[\"\xef\xbb\xbf\"]}", {bom}},
        {"{\"settings\":[\"\xef\xbb\xbf\xef\xbb\xbf\"]}", {bom + bom}},
        // Every string starts afresh: a mark at the start of each one is kept.
        {"{\"settings\":[\"\xef\xbb\xbf"
         "1\",\"\\ufeff2\",\"\xef\xbb\xbf"
         "3\"]}",
         {bom + "1", bom + "2", bom + "3"}},
        // The document's own mark is skipped; the one inside the string is not.
        {"\xef\xbb\xbf{\"settings\":[\"\xef\xbb\xbf"
         "5\"]}",
         {bom + "5"}},
    };
    for (const auto& c : cases) {
        QString error;
        const auto decoded = decode_configuration(c.bytes, &error);
        ASSERT_TRUE(decoded.has_value()) << c.bytes.toStdString() << " " << error.toStdString();
        EXPECT_EQ(decoded->settings, c.settings) << c.bytes.toStdString();
    }
    const QStringList table{bom + "5", "Control Change", "7" + bom, bom};
    const std::optional<Configuration> round_trip = decode_configuration(encode(table));
    ASSERT_TRUE(round_trip.has_value());
    EXPECT_EQ(round_trip->settings, table);
}

// Whatever the table holds, decoding gives back exactly the strings that
// were encoded (see random_text.h for what is drawn and why lone surrogates
// are not).
TEST(ConfigurationJsonTest, RandomTablesRoundTripExactly)
{
    RandomText random(20240611);
    for (int round = 0; round < 3000; ++round) {
        const QStringList settings = random.table(int(random.pick(0, 12)), 24);
        const QByteArray bytes = encode(settings);
        for (char byte : bytes)
            ASSERT_GE(static_cast<unsigned char>(byte), 0x20) << "round " << round;
        const std::optional<Configuration> decoded = decode_configuration(bytes);
        ASSERT_TRUE(decoded.has_value()) << "round " << round;
        ASSERT_EQ(decoded->settings, settings) << "round " << round << ": " << bytes.toStdString();
    }
}

// A lone surrogate is not a character and has no UTF-8 form: the encoder
// writes '?' in its place, so such a string does not survive a save.
TEST(ConfigurationJsonTest, LoneSurrogatesAreWrittenAsQuestionMarks)
{
    const QString lone = QStringLiteral("a") + QChar(0xD83C) + QStringLiteral("b") + QChar(0xDF9B);
    EXPECT_EQ(encode({lone}), QByteArray(R"({"settings":["a?b?"]})"));
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
