#include "tables/RowStack.h"

#include <algorithm>
#include <limits>

namespace korvale {

int RowStack::rowAt(std::int64_t y) const {
    return static_cast<int>(std::max<std::int64_t>(y, 0) / m_rowHeight);
}

int RowStack::pageOf(int height) const {
    return std::max(1, height / m_rowHeight - 1);
}

int RowStack::scrollRange(int rows, int height) const {
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<std::int64_t>(top(rows) - height, 0, most));
}

} // namespace korvale
