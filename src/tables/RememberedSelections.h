#pragma once

#include "tables/RowIndexes.h"

#include <optional>

namespace korvale {

/// What the copy key copies: row positions as of the last selection change, absent until the first.
/// One instance for the whole process, owned by AppDelegate. Rows that are replaced leave it alone,
/// so it may hold positions that no longer exist.
struct RememberedSelections {
    std::optional<RowIndexes> selectedRows;        ///< file threats
    std::optional<RowIndexes> selectedProcessRows; ///< process threats
    /// Events and external devices: shared on purpose, each copies what was last selected in
    /// either.
    std::optional<RowIndexes> selectedEventRows;
};

} // namespace korvale
