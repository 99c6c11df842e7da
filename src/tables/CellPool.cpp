#include "tables/CellPool.h"

#include <algorithm>
#include <utility>

namespace korvale {

std::unique_ptr<CellView> CellPool::take(QLatin1String identifier) {
    const auto found =
        std::find_if(m_cells.rbegin(), m_cells.rend(),
                     [identifier](const auto& cell) { return cell->identifier() == identifier; });
    if (found == m_cells.rend()) {
        return nullptr;
    }
    std::unique_ptr<CellView> cell = std::move(*found);
    m_cells.erase(std::next(found).base());
    return cell;
}

} // namespace korvale
