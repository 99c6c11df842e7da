#pragma once

#include "tables/RowIndexes.h"
#include "tables/RowList.h"

#include <QList>

#include <cstdint>
#include <functional>
#include <optional>

namespace korvale {

/// Rows of a table as they were at one moment. Shares what the table holds, so it costs nothing per
/// row, and nothing that becomes of the table changes it. Made and destroyed on the main thread,
/// read on any.
class RowSnapshot {
public:
    RowSnapshot() = default;
    /// `which` are positions among the shown rows, which `found` tells; no value: all are shown.
    RowSnapshot(RowList rows, std::optional<QList<std::uint32_t>> found, RowIndexes which);

    [[nodiscard]] const RowList& rows() const { return m_rows; }
    [[nodiscard]] std::size_t size() const { return m_which.count(); }
    /// Gives `take` each row's position in rows(), in the order shown, until it returns false; then
    /// the result is false.
    bool forEach(const std::function<bool(std::size_t row)>& take) const;

private:
    RowList m_rows;
    std::optional<QList<std::uint32_t>> m_found;
    RowIndexes m_which;
};

} // namespace korvale
