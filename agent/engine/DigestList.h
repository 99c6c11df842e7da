#pragma once

#include "agent/engine/Sha256.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvale::agent {

/// Known bad contents by their SHA-256. Text files: 64 hex digits at the start of a line, then
/// optionally blanks and a name; empty lines and lines that begin with '#' say nothing.
class DigestList {
public:
    static constexpr std::size_t largestFile = std::size_t{256} << 20; ///< bytes

    /// Adds the lines of `text`; returns how many of them were none of the above.
    std::size_t add(std::string_view text);
    /// Call after the last add() and before the first find().
    void sort();

    /// The name for a digest, "Listed" where the list has none. No value: not in the list.
    [[nodiscard]] std::optional<std::string> find(const Sha256Digest& digest) const;
    [[nodiscard]] std::size_t size() const { return m_entries.size(); }

private:
    struct Entry {
        Sha256Digest digest;
        std::uint32_t name = 0; ///< position in m_names; 0: none
        std::uint32_t length = 0;
    };

    std::vector<Entry> m_entries;
    std::string m_names;
};

} // namespace korvale::agent
