#pragma once

#include "tables/CellPool.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace korvale {

/// The cells of the rows in sight, and the pool to which those go that leave it.
class VisibleCells {
public:
    /// The cells of one row, from left to right.
    using Row = std::vector<std::unique_ptr<CellView>>;

    /// Puts back the cells of all rows before `first` and behind `last`, then makes those that are
    /// missing. `last` < `first`: no rows.
    void show(int first, int last, const std::function<Row(int row)>& make);
    /// Puts back all cells.
    void recycleAll();

    /// nullptr when the row is out of sight.
    [[nodiscard]] const CellView* cell(int row, int column) const;
    [[nodiscard]] int firstRow() const { return m_firstRow; }
    /// Less than firstRow() when there are no rows.
    [[nodiscard]] int lastRow() const { return m_firstRow + static_cast<int>(m_rows.size()) - 1; }

    [[nodiscard]] CellPool& pool() { return m_pool; }
    [[nodiscard]] const CellPool& pool() const { return m_pool; }

private:
    void recycle(Row& row);
    void recycleOutside(int first, int last);

    CellPool m_pool;
    std::deque<Row> m_rows; ///< from m_firstRow on
    int m_firstRow = 0;
};

} // namespace korvale
