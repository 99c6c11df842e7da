#pragma once

namespace korvale {

/// '0' to '9', whatever the locale.
[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace korvale
