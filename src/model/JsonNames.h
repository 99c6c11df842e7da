#pragma once

#include "model/JsonDocument.h"

#include <cstdint>

namespace korvale {

/// Marks the members of the object at `object` that a later member of the same name supersedes and
/// returns how many members are left. Of the outermost object, when it has many members, the names'
/// hashes go into the document. `object` has its extent already, and its number of members as
/// offset.
[[nodiscard]] std::uint32_t supersedeNames(JsonDocument& document, std::uint32_t object);

} // namespace korvale
