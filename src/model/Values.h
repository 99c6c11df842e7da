#pragma once

#include "model/JsonValue.h"
#include "model/Utf8Text.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korvale {

// How values of the agent's files and replies are read, whatever type they turn out to have.

/// The value as a formatted text shows it: a text as it is, an integer in decimal, a fraction in
/// the shortest form that reads back the same, true 1, false 0, a list or object as compact JSON,
/// and null as "(null)".
[[nodiscard]] QString valueText(const JsonValue& value);

/// Appends a JSON string of that text. Escapes are the short ones of RFC 8259, and \u00NN for what
/// has none.
void appendQuoted(std::string& out, std::string_view utf8);

/// valueText of a value that is no list or object, by its kind and JsonValue::utf8.
[[nodiscard]] QString scalarText(JsonKind kind, std::string_view utf8);

/// The value as a cell shows it: like valueText, but null is no value.
[[nodiscard]] std::optional<QString> cellText(const JsonValue& value);

/// The text; every other type is no value. For what is compared, split or taken as a path or key.
[[nodiscard]] std::optional<QString> textOnly(const JsonValue& value);

/// A number cut towards zero, a boolean as 1 or 0, a text by its leading blanks, sign and digits,
/// anything else 0; of the whole number the lowest 64 bits (two's complement).
[[nodiscard]] std::int64_t integerValue(const JsonValue& value);
/// The lowest 32 bits of integerValue.
[[nodiscard]] std::int32_t integer32Value(const JsonValue& value);
[[nodiscard]] std::uint32_t unsigned32Value(const JsonValue& value);

/// true, a number that is not 0, or a text whose first character after blanks, a sign and zeros is
/// one of Y y T t 1 to 9.
[[nodiscard]] bool booleanValue(const JsonValue& value);

} // namespace korvale
