#pragma once

#include <cstdint>

namespace korvale {

/// What is remembered of a list that was parsed, to tell whether the next one differs. Comparable
/// across lists. The default is that of no list: it equals no list with members.
struct ListChecksum {
    std::uint64_t size = 0; ///< of the file, in bytes
    std::uint32_t crc = 0;  ///< zlib's crc32 of the file's bytes
    /// jsonFingerprint of the parsed list: the same for the same members with the same values.
    std::uint64_t content = 0;

    [[nodiscard]] bool sameBytes(const ListChecksum& other) const {
        return size != 0 && size == other.size && crc == other.crc;
    }
    [[nodiscard]] bool sameContent(const ListChecksum& other) const {
        return size != 0 && other.size != 0 && content == other.content;
    }
};

} // namespace korvale
