#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

namespace korvale {

// Numbers as JSON spells them, of any size and precision. `spelling` is a valid JSON number.

/// A decimal number in its only canonical form: sign, digits without leading and trailing zeros,
/// and the power of ten of the last digit. Zero has no digits, no sign and exponent 0. Exponents
/// are saturated far outside of what any file can mean.
struct CanonicalNumber {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;

    friend bool operator==(const CanonicalNumber&, const CanonicalNumber&) = default;
};

[[nodiscard]] CanonicalNumber canonicalNumber(std::string_view spelling);

/// Cut towards zero; of the whole number the lowest 64 bits (two's complement).
[[nodiscard]] std::uint64_t numberToBits(std::string_view spelling);

[[nodiscard]] bool numberIsZero(std::string_view spelling);

/// Integers in decimal, fractions in the shortest form that reads back the same. A number beyond a
/// double's range stays as it is spelled.
[[nodiscard]] QString numberText(std::string_view spelling);

} // namespace korvale
