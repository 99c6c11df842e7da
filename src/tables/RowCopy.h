#pragma once

#include "tables/RowList.h"
#include "tables/TableDescription.h"

#include <QString>

#include <optional>

namespace korvale {

/// The comma-separated text of the rows at `selection`, header line first; an absent selection
/// gives the header alone. Values stand as they are, unquoted; one that a row lacks is "(null)". No
/// text at all when a position lies beyond the rows.
[[nodiscard]] std::optional<QString> copiedText(const RowList& rows,
                                                const TableDescription& description,
                                                const std::optional<RowIndexes>& selection);

/// The same of one row.
[[nodiscard]] QString copiedRow(const RowBatch& batch, std::size_t index,
                                const TableDescription& description);

/// A row's paths, one a line, whole: what would break a line or steer a terminal is visible.
[[nodiscard]] QString copiedPaths(const RowBatch& batch, std::size_t index);

} // namespace korvale
