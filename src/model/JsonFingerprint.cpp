#include "model/JsonFingerprint.h"

#include "model/FastHash.h"
#include "model/JsonNumber.h"

#include <charconv>

namespace korvale {

namespace {

constexpr std::size_t wordDigits = 18; ///< decimal digits that a 64-bit word holds for certain

/// Of a number in canonical form (see CanonicalNumber) with at most wordDigits digits.
std::uint64_t smallNumber(bool negative, std::uint64_t digits, std::int64_t exponent,
                          std::uint64_t seed) {
    return mixWords(digits * 2 + (negative ? 1 : 0) + seed,
                    static_cast<std::uint64_t>(exponent) ^ 0xA0761D6478BD642FU);
}

std::uint64_t anyNumber(std::string_view spelling, std::uint64_t seed) {
    const CanonicalNumber number = canonicalNumber(spelling);
    if (number.digits.size() > wordDigits) {
        return smallNumber(number.negative, fastHash(number.digits, seed), number.exponent, ~seed);
    }
    std::uint64_t digits = 0;
    std::from_chars(number.digits.data(), number.digits.data() + number.digits.size(), digits);
    return smallNumber(number.negative, digits, number.exponent, seed);
}

std::uint64_t numberFingerprint(std::string_view spelling, std::uint64_t seed) {
    if (spelling.size() > wordDigits) {
        return anyNumber(spelling, seed);
    }
    if (spelling.size() == 1) {
        return smallNumber(false, static_cast<std::uint64_t>(spelling.front() - '0'), 0, seed);
    }
    std::uint64_t digits = 0;
    std::int64_t exponent = 0;
    std::int64_t perDigit = 0; // -1 behind the point
    const bool negative = spelling.front() == '-';
    for (const char c : spelling.substr(negative ? 1 : 0)) {
        const auto digit = static_cast<std::uint64_t>(c) - '0';
        if (digit < 10) {
            digits = digits * 10 + digit;
            exponent += perDigit;
        } else if (c == '.') {
            perDigit = -1;
        } else { // an exponent
            return anyNumber(spelling, seed);
        }
    }
    if (digits == 0) {
        return smallNumber(false, 0, 0, seed);
    }
    while (digits % 10 == 0) {
        digits /= 10;
        ++exponent;
    }
    return smallNumber(negative, digits, exponent, seed);
}

class Fingerprint {
public:
    Fingerprint(const JsonDocument& document, std::uint64_t seed)
        : m_document(document), m_seed(seed) {}

    // Recursion ends at the depth that the parser admits.
    // NOLINTBEGIN(misc-no-recursion)
    [[nodiscard]] std::uint64_t of(std::uint32_t index) const {
        const JsonNode node = m_document.nodes[index];
        if (node.kind == JsonKind::Object) {
            return ofObject(index, node);
        }
        return node.kind == JsonKind::List ? ofList(index, node) : ofScalar(node);
    }

private:
    [[nodiscard]] std::uint64_t ofScalar(JsonNode node) const {
        if (node.kind == JsonKind::Text) {
            return fastHash(m_document.view(node), m_seed);
        }
        if (node.kind == JsonKind::Number) {
            return numberFingerprint(m_document.view(node), m_seed);
        }
        if (node.kind == JsonKind::Null) {
            return mixWords(m_seed, 0x8EBC6AF09C88C6E3U);
        }
        return numberFingerprint(node.kind == JsonKind::True ? "1" : "0", m_seed);
    }

    /// A sum does not depend on the order.
    [[nodiscard]] std::uint64_t ofObject(std::uint32_t index, JsonNode object) const {
        const bool hashed = index == 0 && !m_document.nameHashes.empty();
        const std::uint64_t* nameHash = m_document.nameHashes.data();
        std::uint64_t sum = 0;
        for (std::uint32_t at = index + 1; at < object.extent;) {
            const JsonNode name = m_document.nodes[at];
            const JsonNode value = m_document.nodes[at + 1];
            const std::uint64_t hash =
                hashed ? *nameHash++ : fastHash(m_document.view(name), m_seed);
            if (name.superseded == 0) {
                sum += mixWords(hash ^ 0xE7037ED1A0B428DBU,
                                value.isContainer() ? of(at + 1) : ofScalar(value));
            }
            at = value.isContainer() ? value.extent : at + 2;
        }
        return mixWords(sum + m_seed, object.offset ^ 0x589965CC75374CC3U);
    }

    [[nodiscard]] std::uint64_t ofList(std::uint32_t index, JsonNode list) const {
        std::uint64_t state = m_seed ^ list.offset;
        for (std::uint32_t at = index + 1; at < list.extent; at = m_document.behind(at)) {
            state = mixWords(state ^ 0x1D8E4E27C47D124FU, of(at) + m_seed);
        }
        return state;
    }
    // NOLINTEND(misc-no-recursion)

    const JsonDocument& m_document;
    std::uint64_t m_seed;
};

} // namespace

std::uint64_t jsonFingerprint(const JsonDocument& document, std::uint32_t index) {
    return Fingerprint(document, hashSeed()).of(index);
}

} // namespace korvale
