#pragma once

#include "model/Row.h"

#include <cstddef>

namespace korvale::bench {

/// The rows of an agent's list of so many file threats, as a table gets them: what a search reads
/// fastest.
[[nodiscard]] RowBatchPtr listedThreats(std::size_t records);

} // namespace korvale::bench
