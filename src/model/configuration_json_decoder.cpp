// A strict JSON reader (RFC 8259) for the stored table: anything that is not
// well-formed JSON is refused rather than repaired, so a damaged stored value
// falls back to the initial table instead of loading half-right slots.
#include "model/configuration_json.h"

#include <string>

#include "base/utf8_step.h"

namespace {

// Deeper nesting than this is refused; real tables nest two levels.
constexpr int max_depth = 512;

class SettingsReader {
public:
    SettingsReader(const QByteArray& bytes)
        : p_(reinterpret_cast<const unsigned char*>(bytes.constData())), begin_(p_), end_(p_ + bytes.size())
    {
    }

    std::optional<Configuration> read(QString* error);

private:
    enum class SettingsKind { Absent, ArrayOfStrings, NotArray, NonStringElement };

    bool fail(const char* what)
    {
        if (syntax_error_.isEmpty())
            syntax_error_ = QStringLiteral("The data is not valid JSON: %1 at offset %2.")
                                .arg(QLatin1String(what))
                                .arg(p_ - begin_);
        return false;
    }

    void skip_whitespace()
    {
        while (p_ < end_ && (*p_ == ' ' || *p_ == '\t' || *p_ == '\n' || *p_ == '\r'))
            ++p_;
    }

    bool consume(char c)
    {
        if (p_ < end_ && *p_ == static_cast<unsigned char>(c)) {
            ++p_;
            return true;
        }
        return false;
    }

    bool value(int depth);
    bool object(int depth, bool top_level);
    bool array(int depth);
    bool string(std::string* out);
    bool number();
    bool literal(const char* word);
    bool hex4(char32_t& value);
    bool settings_value(int depth);

    const unsigned char* p_;
    const unsigned char* begin_;
    const unsigned char* end_;
    QString syntax_error_;
    SettingsKind settings_kind_ = SettingsKind::Absent;
    qsizetype first_non_string_ = -1;
    QStringList settings_;
    bool top_level_is_object_ = false;
};

bool SettingsReader::value(int depth)
{
    skip_whitespace();
    if (p_ >= end_)
        return fail("unexpected end of data");
    switch (*p_) {
    case '{': return object(depth + 1, false);
    case '[': return array(depth + 1);
    case '"': return string(nullptr);
    case 't': return literal("true");
    case 'f': return literal("false");
    case 'n': return literal("null");
    default:
        if (*p_ == '-' || (*p_ >= '0' && *p_ <= '9'))
            return number();
        return fail("unexpected character");
    }
}

bool SettingsReader::object(int depth, bool top_level)
{
    if (depth > max_depth)
        return fail("too deeply nested");
    ++p_;  // '{'
    skip_whitespace();
    if (consume('}'))
        return true;
    for (;;) {
        skip_whitespace();
        if (p_ >= end_ || *p_ != '"')
            return fail("expected a member name");
        std::string key;
        if (!string(&key))
            return false;
        skip_whitespace();
        if (!consume(':'))
            return fail("expected ':'");
        if (top_level && key == "settings") {
            if (!settings_value(depth))
                return false;
        } else if (!value(depth)) {
            return false;
        }
        skip_whitespace();
        if (consume('}'))
            return true;
        if (!consume(','))
            return fail("expected ',' or '}'");
    }
}

bool SettingsReader::array(int depth)
{
    if (depth > max_depth)
        return fail("too deeply nested");
    ++p_;  // '['
    skip_whitespace();
    if (consume(']'))
        return true;
    for (;;) {
        if (!value(depth))
            return false;
        skip_whitespace();
        if (consume(']'))
            return true;
        if (!consume(','))
            return fail("expected ',' or ']'");
    }
}

// The "settings" member: kept when it is an array of strings, otherwise only
// checked for well-formedness and remembered as the wrong kind. A repeated
// member replaces the earlier one.
bool SettingsReader::settings_value(int depth)
{
    settings_.clear();
    first_non_string_ = -1;
    skip_whitespace();
    if (p_ >= end_ || *p_ != '[') {
        settings_kind_ = SettingsKind::NotArray;
        return value(depth);
    }
    if (depth + 1 > max_depth)
        return fail("too deeply nested");
    settings_kind_ = SettingsKind::ArrayOfStrings;
    ++p_;
    skip_whitespace();
    if (consume(']'))
        return true;
    std::string text;
    for (qsizetype index = 0;; ++index) {
        skip_whitespace();
        if (p_ < end_ && *p_ == '"') {
            text.clear();
            if (!string(&text))
                return false;
            settings_.append(QString::fromUtf8(text.data(), qsizetype(text.size())));
        } else {
            if (!value(depth + 1))
                return false;
            if (settings_kind_ == SettingsKind::ArrayOfStrings) {
                settings_kind_ = SettingsKind::NonStringElement;
                first_non_string_ = index;
            }
        }
        skip_whitespace();
        if (consume(']'))
            return true;
        if (!consume(','))
            return fail("expected ',' or ']'");
    }
}

bool SettingsReader::hex4(char32_t& value)
{
    if (end_ - p_ < 4)
        return fail("incomplete \\u escape");
    value = 0;
    for (int i = 0; i < 4; ++i, ++p_) {
        const unsigned char c = *p_;
        value <<= 4;
        if (c >= '0' && c <= '9')
            value |= c - '0';
        else if (c >= 'a' && c <= 'f')
            value |= c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            value |= c - 'A' + 10;
        else
            return fail("invalid \\u escape");
    }
    return true;
}

void append_utf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out += char(cp);
    } else if (cp < 0x800) {
        out += char(0xC0 | (cp >> 6));
        out += char(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += char(0xE0 | (cp >> 12));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    } else {
        out += char(0xF0 | (cp >> 18));
        out += char(0x80 | ((cp >> 12) & 0x3F));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
}

// Reads a string into `out` as UTF-8 (or only checks it when out is null).
bool SettingsReader::string(std::string* out)
{
    ++p_;  // '"'
    for (;;) {
        // Copy the plain run up to the next quote, backslash, control or non-ASCII byte.
        const unsigned char* run = p_;
        while (p_ < end_ && *p_ >= 0x20 && *p_ < 0x80 && *p_ != '"' && *p_ != '\\')
            ++p_;
        if (out)
            out->append(reinterpret_cast<const char*>(run), size_t(p_ - run));
        if (p_ >= end_)
            return fail("unterminated string");
        const unsigned char c = *p_;
        if (c == '"') {
            ++p_;
            return true;
        }
        if (c < 0x20)
            return fail("control character in string");
        if (c >= 0x80) {
            const Utf8Step step = next_utf8(p_, end_);
            if (!step.valid)
                return fail("invalid UTF-8 in string");
            if (out)
                out->append(reinterpret_cast<const char*>(p_), size_t(step.length));
            p_ += step.length;
            continue;
        }
        // Backslash escape.
        ++p_;
        if (p_ >= end_)
            return fail("unterminated string");
        const unsigned char e = *p_++;
        char32_t cp = 0;
        switch (e) {
        case '"': cp = '"'; break;
        case '\\': cp = '\\'; break;
        case '/': cp = '/'; break;
        case 'b': cp = '\b'; break;
        case 'f': cp = '\f'; break;
        case 'n': cp = '\n'; break;
        case 'r': cp = '\r'; break;
        case 't': cp = '\t'; break;
        case 'u': {
            if (!hex4(cp))
                return false;
            if (cp >= 0xDC00 && cp <= 0xDFFF)
                return fail("unpaired surrogate escape");
            if (cp >= 0xD800 && cp <= 0xDBFF) {
                char32_t low = 0;
                if (end_ - p_ < 2 || p_[0] != '\\' || p_[1] != 'u')
                    return fail("unpaired surrogate escape");
                p_ += 2;
                if (!hex4(low))
                    return false;
                if (low < 0xDC00 || low > 0xDFFF)
                    return fail("unpaired surrogate escape");
                cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
            }
            break;
        }
        default:
            --p_;
            return fail("invalid escape");
        }
        if (out)
            append_utf8(*out, cp);
    }
}

bool SettingsReader::number()
{
    consume('-');
    if (consume('0')) {
        // no leading zeros
    } else if (p_ < end_ && *p_ >= '1' && *p_ <= '9') {
        while (p_ < end_ && *p_ >= '0' && *p_ <= '9')
            ++p_;
    } else {
        return fail("invalid number");
    }
    if (consume('.')) {
        if (p_ >= end_ || *p_ < '0' || *p_ > '9')
            return fail("invalid number");
        while (p_ < end_ && *p_ >= '0' && *p_ <= '9')
            ++p_;
    }
    if (p_ < end_ && (*p_ == 'e' || *p_ == 'E')) {
        ++p_;
        if (!consume('+'))
            consume('-');
        if (p_ >= end_ || *p_ < '0' || *p_ > '9')
            return fail("invalid number");
        while (p_ < end_ && *p_ >= '0' && *p_ <= '9')
            ++p_;
    }
    return true;
}

bool SettingsReader::literal(const char* word)
{
    for (const char* w = word; *w; ++w, ++p_)
        if (p_ >= end_ || *p_ != static_cast<unsigned char>(*w))
            return fail("invalid literal");
    return true;
}

std::optional<Configuration> SettingsReader::read(QString* error)
{
    auto refuse = [error](const QString& why) -> std::optional<Configuration> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    // A leading UTF-8 byte-order mark is tolerated.
    if (end_ - p_ >= 3 && p_[0] == 0xEF && p_[1] == 0xBB && p_[2] == 0xBF)
        p_ += 3;
    skip_whitespace();
    bool ok;
    if (p_ < end_ && *p_ == '{') {
        top_level_is_object_ = true;
        ok = object(1, true);
    } else {
        ok = value(0);
    }
    if (ok) {
        skip_whitespace();
        if (p_ != end_)
            ok = fail("unexpected data after the end");
    }
    if (!ok)
        return refuse(syntax_error_);
    if (!top_level_is_object_)
        return refuse(QStringLiteral("Expected a JSON object at the top level."));
    switch (settings_kind_) {
    case SettingsKind::Absent: return refuse(QStringLiteral("No value associated with key \"settings\"."));
    case SettingsKind::NotArray: return refuse(QStringLiteral("Expected an array of strings for key \"settings\"."));
    case SettingsKind::NonStringElement:
        return refuse(QStringLiteral("Expected a string at \"settings\" index %1.").arg(first_non_string_));
    case SettingsKind::ArrayOfStrings: break;
    }
    return Configuration{std::move(settings_)};
}

}  // namespace

std::optional<Configuration> decode_configuration(const QByteArray& bytes, QString* error)
{
    return SettingsReader(bytes).read(error);
}
