#pragma once

#include <cstdint>

namespace korvale {

/// What is remembered of a list that was parsed, to tell whether the next one differs. Comparable
/// across lists. The default is that of no list: it equals no list with members.
struct ListChecksum {
    std::uint64_t size = 0;  ///< of the file, in bytes
    std::uint64_t bytes = 0; ///< hash of the file's bytes; good within this process only
    /// zlib's crc32 of the parsed list's byte image: the same for the same members with the same
    /// values, whatever their order and spelling. Good within this process only.
    std::uint32_t crc = 0;

    [[nodiscard]] bool sameBytes(const ListChecksum& other) const {
        return size != 0 && size == other.size && bytes == other.bytes;
    }
    [[nodiscard]] bool sameContent(const ListChecksum& other) const {
        return size != 0 && other.size != 0 && crc == other.crc;
    }
};

} // namespace korvale
