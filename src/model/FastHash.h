#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace korvale {

/// Drawn anew in each process: nobody who names files can choose names that collide.
[[nodiscard]] std::uint64_t hashSeed();

/// Folds the 128-bit product of two words into one: a fast mixer of good quality.
[[nodiscard]] inline std::uint64_t mixWords(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// A 64-bit hash for tables and for telling lists apart within one process; not cryptographic.
[[nodiscard]] inline std::uint64_t fastHash(std::string_view text, std::uint64_t seed) {
    constexpr std::uint64_t odd1 = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t odd2 = 0xD6E8FEB86659FD93U;
    const auto word = [](const char* from) {
        std::uint64_t value = 0;
        std::memcpy(&value, from, sizeof value);
        return value;
    };
    const char* at = text.data();
    std::size_t left = text.size();
    std::uint64_t state = seed ^ mixWords(left + odd1, odd2);
    while (left > 16) {
        state = mixWords(word(at) ^ odd1 ^ state, word(at + 8) ^ odd2 ^ seed);
        at += 16;
        left -= 16;
    }
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (left >= 8) {
        low = word(at);
        high = word(at + left - 8);
    } else if (left > 0) {
        std::memcpy(&low, at, left);
    }
    return mixWords(low ^ odd1 ^ state, high ^ odd2 ^ seed);
}

} // namespace korvale
