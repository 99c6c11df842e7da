#pragma once

#include "model/Row.h"
#include "tables/RowList.h"

#include <memory>
#include <optional>

namespace korvale {

/// One row of a table, found again when the table's rows are others: by its batch where rows are
/// added, by what the agent calls it where a list is replaced. Keeps no batch alive.
class FollowedRow {
public:
    FollowedRow() = default;
    /// Row `row` (< size()) of `rows`.
    FollowedRow(const RowList& rows, std::size_t row);

    /// Where it stands in `rows` now; no value once it has gone. It may come back.
    std::optional<std::size_t> find(const RowList& rows);

private:
    std::weak_ptr<const RowBatch> m_batch;
    std::size_t m_index = 0;
    std::optional<RowIdentity> m_identity;
};

} // namespace korvale
