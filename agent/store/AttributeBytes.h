#pragma once

#include "agent/store/QuarantineRecord.h"

#include <string>
#include <vector>

namespace korvale::agent {

/// Extended attributes as one run of bytes: for each the lengths of name and value (four bytes
/// each, little endian), then both.
[[nodiscard]] std::string packAttributes(const std::vector<ExtendedAttribute>& attributes);
/// What can be read of it; a damaged tail is left out.
[[nodiscard]] std::vector<ExtendedAttribute> unpackAttributes(const std::string& bytes);

} // namespace korvale::agent
