#pragma once

#include "model/JsonDocument.h"

#include <cstdint>

namespace korvale {

/// A number that equal values share, whatever the order of members, white space, escapes and the
/// spelling of numbers; values that differ share it by chance only (64 bits, seeded per process:
/// never to be stored).
[[nodiscard]] std::uint64_t jsonFingerprint(const JsonDocument& document, std::uint32_t index);

} // namespace korvale
