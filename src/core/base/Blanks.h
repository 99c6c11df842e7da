#pragma once

namespace korvale {

/// What isspace(3) knows in the locale C, whatever the locale.
[[nodiscard]] constexpr bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace korvale
