#include "PlainJson.h"

#include <QStringDecoder>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace korvale {
namespace {

struct Wrong {};

/// U+FFFD in place of each surrogate that is not half of a pair.
QString withoutHalves(QString utf16) {
    for (qsizetype i = 0; i < utf16.size(); ++i) {
        if (utf16[i].isHighSurrogate() && i + 1 < utf16.size() && utf16[i + 1].isLowSurrogate()) {
            ++i;
        } else if (utf16[i].isSurrogate()) {
            utf16[i] = QChar::ReplacementCharacter;
        }
    }
    return utf16;
}

class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    PlainJson document() {
        const PlainJson value = read(0);
        if (m_at != m_text.size() ||
            (value.kind != PlainJson::Kind::List && value.kind != PlainJson::Kind::Object)) {
            throw Wrong();
        }
        return value;
    }

private:
    [[nodiscard]] char peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    char take() {
        if (m_at == m_text.size()) {
            throw Wrong();
        }
        return m_text[m_at++];
    }
    void expect(std::string_view word) {
        if (m_text.substr(m_at, word.size()) != word) {
            throw Wrong();
        }
        m_at += word.size();
    }
    void skipBlanks() {
        while (m_at < m_text.size() &&
               std::string_view(" \t\r\n").find(peek()) != std::string::npos) {
            ++m_at;
        }
    }

    PlainJson read(int depth) {
        skipBlanks();
        PlainJson value;
        switch (peek()) {
        case '{':
            value = object(depth + 1);
            break;
        case '[':
            value = list(depth + 1);
            break;
        case '"':
            value.kind = PlainJson::Kind::Text;
            value.text = string();
            break;
        case 't':
            expect("true");
            value.kind = PlainJson::Kind::True;
            break;
        case 'f':
            expect("false");
            value.kind = PlainJson::Kind::False;
            break;
        case 'n':
            expect("null");
            break;
        default:
            value.kind = PlainJson::Kind::Number;
            value.spelling = m_text.substr(m_at);
            value.text = number();
            value.spelling.resize(value.spelling.size() - (m_text.size() - m_at));
        }
        skipBlanks();
        return value;
    }

    PlainJson object(int depth) {
        if (depth > 512) {
            throw Wrong();
        }
        PlainJson value;
        value.kind = PlainJson::Kind::Object;
        std::vector<std::pair<std::string, PlainJson>> all;
        take();
        skipBlanks();
        while (peek() != '}' || !all.empty()) {
            skipBlanks();
            std::string name = string();
            skipBlanks();
            expect(":");
            all.emplace_back(std::move(name), read(depth));
            if (peek() != ',') {
                break;
            }
            ++m_at;
        }
        expect("}");
        // Quadratic on purpose: nothing here can be wrong in an interesting way.
        for (std::size_t i = 0; i < all.size(); ++i) {
            const bool last =
                std::none_of(all.begin() + static_cast<std::ptrdiff_t>(i) + 1, all.end(),
                             [&](const auto& m) { return m.first == all[i].first; });
            if (last) {
                value.members.push_back(all[i]);
            }
        }
        return value;
    }

    PlainJson list(int depth) {
        if (depth > 512) {
            throw Wrong();
        }
        PlainJson value;
        value.kind = PlainJson::Kind::List;
        take();
        skipBlanks();
        while (peek() != ']' || !value.elements.empty()) {
            value.elements.push_back(read(depth));
            if (peek() != ',') {
                break;
            }
            ++m_at;
        }
        expect("]");
        return value;
    }

    char16_t hexDigits() {
        unsigned value = 0;
        for (int i = 0; i < 4; ++i) {
            const char c = take();
            if (std::isxdigit(static_cast<unsigned char>(c)) == 0) {
                throw Wrong();
            }
            value = value * 16 + static_cast<unsigned>(std::stoi(std::string(1, c), nullptr, 16));
        }
        return static_cast<char16_t>(value);
    }

    std::string string() {
        expect("\"");
        QString result;
        std::string plain;
        const auto flush = [&] {
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            const QString decoded =
                decoder(QByteArrayView(plain.data(), static_cast<qsizetype>(plain.size())));
            // A leading U+FEFF is a character of the text like any other.
            if (decoder.hasError() ||
                decoded.toUtf8().size() != static_cast<qsizetype>(plain.size())) {
                throw Wrong();
            }
            result += decoded;
            plain.clear();
        };
        for (char c = take(); c != '"'; c = take()) {
            if (static_cast<unsigned char>(c) < 0x20) {
                throw Wrong();
            }
            if (c != '\\') {
                plain += c;
                continue;
            }
            flush();
            const char name = take();
            const std::size_t known = std::string_view("\"\\/bfnrt").find(name);
            if (known != std::string::npos) {
                result += QLatin1Char("\"\\/\b\f\n\r\t"[known]);
            } else if (name == 'u') {
                result += QChar(hexDigits());
            } else {
                throw Wrong();
            }
        }
        flush();
        return withoutHalves(result).toStdString();
    }

    std::string digits() {
        std::string result;
        while (std::isdigit(static_cast<unsigned char>(peek())) != 0) {
            result += take();
        }
        if (result.empty()) {
            throw Wrong();
        }
        return result;
    }

    /// "-12.50e3" becomes "-125e2".
    std::string number() {
        const bool negative = peek() == '-';
        if (negative) {
            ++m_at;
        }
        std::string mantissa = digits();
        if (mantissa.size() > 1 && mantissa[0] == '0') {
            throw Wrong();
        }
        long long exponent = 0;
        if (peek() == '.') {
            ++m_at;
            const std::string fraction = digits();
            mantissa += fraction;
            exponent -= static_cast<long long>(fraction.size());
        }
        if (peek() == 'e' || peek() == 'E') {
            ++m_at;
            const bool down = peek() == '-';
            if (down || peek() == '+') {
                ++m_at;
            }
            long long shift = 0;
            for (const char c : digits()) {
                shift = std::min(1LL << 40, shift * 10 + (c - '0')); // beyond all that can matter
            }
            exponent += down ? -shift : shift;
        }
        mantissa.erase(0, mantissa.find_first_not_of('0'));
        if (mantissa.empty()) {
            return "0";
        }
        while (mantissa.back() == '0') {
            mantissa.pop_back();
            ++exponent;
        }
        return std::string(negative ? "-" : "")
            .append(mantissa)
            .append("e")
            .append(std::to_string(exponent));
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

std::string withLength(std::string_view text) {
    return std::to_string(text.size()).append(":").append(text);
}

std::string quoted(const std::string& text) {
    static const std::map<char, std::string> escapes = {
        {'"', "\\\""}, {'\\', "\\\\"}, {'\b', "\\b"}, {'\f', "\\f"},
        {'\n', "\\n"}, {'\r', "\\r"},  {'\t', "\\t"}};
    std::string result;
    for (const char c : text) {
        const auto escape = escapes.find(c);
        if (escape != escapes.end()) {
            result += escape->second;
        } else if (c >= 0 && c < 0x20) {
            char code[7];
            std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
            result += code;
        } else {
            result += c;
        }
    }
    return "\"" + result + "\"";
}

/// The fewest digits that read back as the same double; integers written out.
std::string shownNumber(const PlainJson& number) {
    if (number.text == "0" || number.spelling.find_first_of(".eE") == std::string::npos) {
        return number.text == "0" ? "0" : number.spelling;
    }
    const double value = std::strtod(number.spelling.c_str(), nullptr);
    const bool underflow = value == 0;
    if (std::isinf(value) || underflow) {
        return number.spelling;
    }
    char text[40];
    if (std::fabs(value) < 1e16 && value == std::floor(value)) {
        std::snprintf(text, sizeof text, "%.0f", value);
        return text;
    }
    for (int digits = 1; digits <= 17; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, value);
        if (std::strtod(text, nullptr) == value) {
            break;
        }
    }
    return text;
}

} // namespace

const PlainJson* PlainJson::find(std::string_view name) const {
    for (const auto& [key, value] : members) {
        if (key == name) {
            return value.kind == Kind::Null ? nullptr : &value;
        }
    }
    return nullptr;
}

std::string PlainJson::canonical() const {
    if (kind == Kind::True || kind == Kind::False) {
        PlainJson number; // equal by value
        number.kind = Kind::Number;
        number.text = kind == Kind::True ? "1e0" : "0";
        return number.canonical();
    }
    std::string result(1, "nftN\"[{"[static_cast<int>(kind)]);
    result += withLength(text);
    for (const PlainJson& element : elements) {
        result += element.canonical();
    }
    std::vector<std::string> sorted;
    for (const auto& [name, value] : members) {
        sorted.push_back(withLength(name).append(value.canonical()));
    }
    std::sort(sorted.begin(), sorted.end());
    for (const std::string& member : sorted) {
        result += member;
    }
    return result.append("]");
}

std::string PlainJson::shown() const {
    switch (kind) {
    case Kind::Null:
        return "(null)";
    case Kind::False:
        return "0";
    case Kind::True:
        return "1";
    case Kind::Number:
        return shownNumber(*this);
    case Kind::Text:
        return text;
    default:
        return compact();
    }
}

std::string PlainJson::compact() const {
    std::string result;
    switch (kind) {
    case Kind::Null:
        return "null";
    case Kind::False:
        return "false";
    case Kind::True:
        return "true";
    case Kind::Number:
        return shownNumber(*this);
    case Kind::Text:
        return quoted(text);
    case Kind::List:
        for (const PlainJson& element : elements) {
            result.append(result.empty() ? "" : ",").append(element.compact());
        }
        return "[" + result + "]";
    default:
        for (const auto& [name, value] : members) {
            result.append(result.empty() ? "" : ",").append(quoted(name)).append(":");
            result += value.compact();
        }
        return "{" + result + "}";
    }
}

std::optional<PlainJson> parsePlainJson(std::string_view text) {
    try {
        return Reader(text).document();
    } catch (const Wrong&) {
        return std::nullopt;
    }
}

} // namespace korvale
