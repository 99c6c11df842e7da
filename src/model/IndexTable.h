#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvale {

/// A hash table of indices for lists that are walked once and never shrink. It knows nothing of
/// what an index stands for: callers bring hash and comparison. Hashes must be seeded and take in
/// every byte of what they stand for, as whoever writes the lists chooses these bytes.
class IndexTable {
public:
    class Entry {
    public:
        [[nodiscard]] bool isNew() const { return m_indexPlusOne == 0; }
        [[nodiscard]] std::uint32_t index() const { return m_indexPlusOne - 1; }
        void setIndex(std::uint32_t index) { m_indexPlusOne = index + 1; }

    private:
        friend class IndexTable;
        std::uint32_t m_tag = 0;
        std::uint32_t m_indexPlusOne = 0;
    };

    /// For at most `most` entries. Half of the places stay empty, so that probes stay short.
    explicit IndexTable(std::size_t most) : m_entries(std::bit_ceil(most * 2)) {}

    /// Fetches from memory what `at` will need some steps later.
    void prefetch(std::uint64_t hash) const { __builtin_prefetch(&m_entries[placeOf(hash)], 1); }

    /// The entry whose hash is `hash` and whose index `same` accepts; else a new one, which must be
    /// given its index before the next call.
    template <typename Same>
    Entry& at(std::uint64_t hash, Same same) {
        const auto tag = static_cast<std::uint32_t>(hash >> 32);
        std::size_t place = placeOf(hash);
        while (!m_entries[place].isNew() &&
               (m_entries[place].m_tag != tag || !same(m_entries[place].index()))) {
            place = placeOf(place + 1);
        }
        m_entries[place].m_tag = tag;
        return m_entries[place];
    }

private:
    [[nodiscard]] std::size_t placeOf(std::uint64_t hash) const {
        return hash & (m_entries.size() - 1);
    }

    std::vector<Entry> m_entries; ///< a power of two of them
};

} // namespace korvale
