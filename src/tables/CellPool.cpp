#include "tables/CellPool.h"

#include <algorithm>
#include <utility>

namespace korvale {

std::unique_ptr<CellView> CellPool::take(QLatin1String identifier) {
    const auto found = std::find_if(cells_.rbegin(), cells_.rend(), [identifier](const auto& cell) {
        return cell->identifier() == identifier;
    });
    if (found == cells_.rend()) {
        return nullptr;
    }
    std::unique_ptr<CellView> cell = std::move(*found);
    cells_.erase(std::next(found).base());
    return cell;
}

} // namespace korvale
