#pragma once

#include <cstdint>
#include <string_view>

namespace korvale {

// What a text is worth where a number or a choice is wanted: its beginning counts, blanks before it
// do not, and there is no error.

/// Sign and digits, modulo 2^64; 0 without any.
[[nodiscard]] std::uint64_t leadingInteger(std::string_view text);

/// True when the first character behind a sign and zeros is Y, y, T, t or 1 to 9.
[[nodiscard]] bool leadingBoolean(std::string_view text);

} // namespace korvale
