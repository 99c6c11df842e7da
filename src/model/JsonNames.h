#pragma once

#include "model/JsonDocument.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace korvale {

/// Marks the members of one object that a later member of the same name supersedes. Keeps its work
/// space from call to call.
class JsonNames {
public:
    /// `names` are the node indices of the object's names in the file's order. Returns how many
    /// members are left.
    /// For the document's outermost object with many members, the names' hashes go into it.
    std::uint32_t supersede(JsonDocument& document, std::span<const std::uint32_t> names);

private:
    std::uint32_t supersedeMany(JsonDocument& document, std::span<const std::uint32_t> names);

    std::vector<std::uint64_t> m_hashes;
    std::vector<std::uint32_t> m_slots;
};

} // namespace korvale
