#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace korvale::agent {

using Sha256Digest = std::array<std::uint8_t, 32>;

inline constexpr std::size_t kSha256Digits = 64;

[[nodiscard]] std::string toHex(const Sha256Digest& digest); ///< lower case
/// Exactly 64 hex digits of either case.
[[nodiscard]] std::optional<Sha256Digest> parseSha256(std::string_view hex);

[[nodiscard]] std::optional<Sha256Digest> sha256Of(std::string_view bytes);
/// Of a whole file, read by pread: its offset stays. No value when it cannot be read, is longer
/// than `limit` bytes, or `deadline` or `stop` come first.
[[nodiscard]] std::optional<Sha256Digest> sha256Of(int descriptor, std::int64_t limit,
                                                   std::chrono::steady_clock::time_point deadline,
                                                   const std::stop_token& stop);

} // namespace korvale::agent
