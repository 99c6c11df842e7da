#include "model/Row.h"

namespace korvale {

void RowBatch::visitPaths(std::size_t index, const PathVisitor& visit) const {
    if (const std::optional<QString> path = text(index, RowKey::Path)) {
        visit(*path);
    }
}

std::size_t RowBatch::pathCount(std::size_t index) const {
    return text(index, RowKey::Path) ? 1 : 0;
}

} // namespace korvale
