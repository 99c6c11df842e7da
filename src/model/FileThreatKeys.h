#pragma once

#include "model/FileThreatRows.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace korvale {

/// What files are grouped by.
struct FileThreatKey {
    std::uint32_t state;
    JsonNode id; ///< as FileThreatRows stores it
};

/// Compares keys: a key is one text, the state in decimal and right behind it the identifier as it
/// is printed. State 1 with "12" and state 11 with "2" are one key, on purpose.
class FileThreatKeys {
public:
    /// `storage` holds what the identifiers stand for. It must outlive this object.
    explicit FileThreatKeys(const FileThreatRows::Storage& storage);

    /// Equal keys have one hash. It takes in every byte under the process's seed.
    [[nodiscard]] std::uint64_t hash(const FileThreatKey& key) const;
    [[nodiscard]] bool equal(const FileThreatKey& a, const FileThreatKey& b) const;

private:
    [[nodiscard]] std::string_view bytesOf(JsonNode node) const;
    [[nodiscard]] std::string printed(JsonNode id) const;
    [[nodiscard]] std::string whole(const FileThreatKey& key) const;

    const FileThreatRows::Storage& m_storage;
    std::uint64_t m_seed;
};

} // namespace korvale
