#include "model/JsonNames.h"

#include "model/FastHash.h"

#include <bit>
#include <utility>

namespace korvale {

namespace {

/// Up to here comparing each with each is cheaper than hashing.
constexpr std::size_t fewNames = 8;
/// How far ahead of its use a slot of a large table is fetched from memory.
constexpr std::size_t fetchAhead = 16;

std::uint32_t supersedeFew(JsonDocument& document, std::span<const std::uint32_t> names) {
    auto left = static_cast<std::uint32_t>(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        JsonNode& earlier = document.nodes[names[i]];
        for (std::size_t j = i + 1; j < names.size(); ++j) {
            const JsonNode later = document.nodes[names[j]];
            if (earlier.extent == later.extent && document.view(earlier) == document.view(later)) {
                earlier.superseded = 1;
                --left;
                break;
            }
        }
    }
    return left;
}

} // namespace

std::uint32_t JsonNames::supersede(JsonDocument& document, std::span<const std::uint32_t> names) {
    return names.size() <= fewNames ? supersedeFew(document, names)
                                    : supersedeMany(document, names);
}

std::uint32_t JsonNames::supersedeMany(JsonDocument& document,
                                       std::span<const std::uint32_t> names) {
    const std::uint64_t seed = hashSeed();
    m_hashes.clear();
    m_hashes.reserve(names.size());
    for (const std::uint32_t name : names) {
        m_hashes.push_back(fastHash(document.view(document.nodes[name]), seed));
    }
    // A slot holds the position of a name plus one. Half of them stay empty, so probes stay short.
    m_slots.assign(std::bit_ceil(names.size() * 2), 0);
    const std::size_t mask = m_slots.size() - 1;
    auto left = static_cast<std::uint32_t>(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i + fetchAhead < names.size()) {
            __builtin_prefetch(&m_slots[m_hashes[i + fetchAhead] & mask], 1);
        }
        std::size_t slot = m_hashes[i] & mask;
        for (; m_slots[slot] != 0; slot = (slot + 1) & mask) {
            const std::size_t other = m_slots[slot] - 1;
            JsonNode& earlier = document.nodes[names[other]];
            if (m_hashes[other] == m_hashes[i] &&
                document.view(earlier) == document.view(document.nodes[names[i]])) {
                earlier.superseded = 1;
                --left;
                break;
            }
        }
        m_slots[slot] = static_cast<std::uint32_t>(i + 1);
    }
    if (names.front() == 1) {
        document.nameHashes = std::move(m_hashes);
    }
    return left;
}

} // namespace korvale
