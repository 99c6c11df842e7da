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
    const auto half = [](const char* from) {
        std::uint32_t value = 0;
        std::memcpy(&value, from, sizeof value);
        return std::uint64_t{value};
    };
    const auto byte = [](const char* from) {
        return std::uint64_t{static_cast<unsigned char>(*from)};
    };
    const char* at = text.data();
    std::size_t left = text.size();
    std::uint64_t state = seed ^ mixWords(left + odd1, odd2);
    while (left > 16) {
        state = mixWords(word(at) ^ odd1 ^ state, word(at + 8) ^ odd2 ^ seed);
        at += 16;
        left -= 16;
    }
    // What is left is read from both its ends, which may overlap.
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (left >= 8) {
        low = word(at);
        high = word(at + left - 8);
    } else if (left >= 4) {
        low = half(at) | half(at + left - 4) << 32;
    } else if (left > 0) {
        low = byte(at) | byte(at + left / 2) << 8 | byte(at + left - 1) << 16;
    }
    return mixWords(low ^ odd1 ^ state, high ^ odd2 ^ seed);
}

/// The same for large blocks, faster: four words at a time that do not wait for each other.
[[nodiscard]] std::uint64_t fastBlockHash(std::string_view block, std::uint64_t seed);

} // namespace korvale
