#include "model/Values.h"

#include "model/JsonNumber.h"
#include "platform/LeadingValue.h"

#include <string>

namespace korvale {

void appendQuoted(std::string& out, std::string_view utf8) {
    constexpr std::string_view special = "\"\\\b\f\n\r\t";
    constexpr std::string_view shortEscapes = "\"\\bfnrt";
    constexpr std::string_view hexDigits = "0123456789abcdef";
    out += '"';
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && c != '"' && c != '\\') {
            out += c;
        } else if (const auto known = special.find(c); known != std::string_view::npos) {
            out += '\\';
            out += shortEscapes[known];
        } else {
            out += "\\u00";
            out += hexDigits[byte >> 4U];
            out += hexDigits[byte & 0x0FU];
        }
    }
    out += '"';
}

namespace {

/// Puts `end` in the place of the comma behind the last element, if there is one.
void closeContainer(std::string& out, char end) {
    if (out.back() == ',') {
        out.back() = end;
    } else {
        out += end;
    }
}

// Recursion ends at the depth that the parser admits.
// NOLINTBEGIN(misc-no-recursion)
void appendCompact(std::string& out, const JsonValue& value) {
    switch (value.kind()) {
    case JsonKind::Null:
        out += "null";
        break;
    case JsonKind::False:
        out += "false";
        break;
    case JsonKind::True:
        out += "true";
        break;
    case JsonKind::Number:
        out += numberText(value.utf8()).toStdString();
        break;
    case JsonKind::Text:
        appendQuoted(out, value.utf8());
        break;
    case JsonKind::List:
        out += '[';
        for (const JsonValue& element : value.elements()) {
            appendCompact(out, element);
            out += ',';
        }
        closeContainer(out, ']');
        break;
    case JsonKind::Object:
        out += '{';
        for (const JsonMember& member : value.members()) {
            appendQuoted(out, member.name.utf8());
            out += ':';
            appendCompact(out, member.value);
            out += ',';
        }
        closeContainer(out, '}');
        break;
    }
}
// NOLINTEND(misc-no-recursion)

} // namespace

QString scalarText(JsonKind kind, std::string_view utf8) {
    switch (kind) {
    case JsonKind::False:
        return QStringLiteral("0");
    case JsonKind::True:
        return QStringLiteral("1");
    case JsonKind::Number:
        return numberText(utf8);
    case JsonKind::Text:
        return utf8Text(utf8);
    default:
        return QStringLiteral("(null)");
    }
}

QString valueText(const JsonValue& value) {
    if (!value.isList() && !value.isObject()) {
        return scalarText(value.kind(), value.utf8());
    }
    std::string compact;
    appendCompact(compact, value);
    return utf8Text(compact);
}

std::optional<QString> cellText(const JsonValue& value) {
    return value.isNull() ? std::nullopt : std::optional(valueText(value));
}

std::optional<QString> textOnly(const JsonValue& value) {
    return value.isText() ? std::optional(utf8Text(value.utf8())) : std::nullopt;
}

std::int64_t integerValue(const JsonValue& value) {
    switch (value.kind()) {
    case JsonKind::True:
        return 1;
    case JsonKind::Number:
        return static_cast<std::int64_t>(numberToBits(value.utf8()));
    case JsonKind::Text:
        return static_cast<std::int64_t>(leadingInteger(value.utf8()));
    default:
        return 0;
    }
}

std::int32_t integer32Value(const JsonValue& value) {
    return static_cast<std::int32_t>(integerValue(value));
}

std::uint32_t unsigned32Value(const JsonValue& value) {
    return static_cast<std::uint32_t>(integerValue(value));
}

bool booleanValue(const JsonValue& value) {
    switch (value.kind()) {
    case JsonKind::True:
        return true;
    case JsonKind::Number:
        return !numberIsZero(value.utf8());
    case JsonKind::Text:
        return leadingBoolean(value.utf8());
    default:
        return false;
    }
}

} // namespace korvale
