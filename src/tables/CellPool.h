#pragma once

#include "tables/CellView.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace korvale {

/// Cells that are out of sight, waiting for their next row. The latest one put back is taken first.
class CellPool {
public:
    void put(std::unique_ptr<CellView> cell) { m_cells.push_back(std::move(cell)); }
    /// The latest cell with that identifier; nullptr when there is none.
    [[nodiscard]] std::unique_ptr<CellView> take(QLatin1String identifier);
    [[nodiscard]] std::size_t size() const { return m_cells.size(); }

private:
    std::vector<std::unique_ptr<CellView>> m_cells;
};

} // namespace korvale
