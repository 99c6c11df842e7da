#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace korvale {

/// Resolves the escapes of a JSON string's inside in place and returns its new length; no value
/// when an escape is wrong: unknown, or cut short. Half a surrogate pair becomes U+FFFD.
[[nodiscard]] std::optional<std::size_t> resolveEscapes(std::span<char> text);

} // namespace korvale
