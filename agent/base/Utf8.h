#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvale::agent {

/// How many bytes the first character of `bytes` has; 0 when they do not begin with a valid one
/// (too long forms, surrogates and numbers above U+10FFFF are not) or are empty.
[[nodiscard]] std::size_t utf8Length(std::string_view bytes);

/// Whether a whole character, as utf8Length measures it, controls rather than shows something: C0,
/// DEL, C1, and what turns the direction of writing or separates lines.
[[nodiscard]] bool isControl(std::string_view character);

/// `bytes` with U+FFFD for every byte that is no part of a valid character.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

} // namespace korvale::agent
