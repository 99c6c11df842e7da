#include "tables/RowSnapshot.h"

#include <utility>

namespace korvale {

RowSnapshot::RowSnapshot(RowList rows, std::optional<QList<std::uint32_t>> found, RowIndexes which)
    : m_rows(std::move(rows)), m_found(std::move(found)), m_which(std::move(which)) {}

bool RowSnapshot::forEach(const std::function<bool(std::size_t row)>& take) const {
    for (const RowIndexes::Range& range : m_which.ranges()) {
        for (int shown = range.first; shown <= range.last; ++shown) {
            if (!take(m_found ? m_found->value(shown) : static_cast<std::size_t>(shown))) {
                return false;
            }
        }
    }
    return true;
}

} // namespace korvale
