#include "tables/RowIndexes.h"

#include <algorithm>
#include <utility>

namespace korvale {

RowIndexes::RowIndexes(std::vector<Range> ranges) {
    std::sort(ranges.begin(), ranges.end(),
              [](const Range& a, const Range& b) { return a.first < b.first; });
    for (const Range& range : ranges) {
        if (!m_ranges.empty() && range.first <= m_ranges.back().last + 1) {
            m_ranges.back().last = std::max(m_ranges.back().last, range.last);
        } else {
            m_ranges.push_back(range);
        }
    }
}

std::size_t RowIndexes::count() const {
    std::size_t total = 0;
    for (const Range& range : m_ranges) {
        total += static_cast<std::size_t>(range.last - range.first) + 1;
    }
    return total;
}

} // namespace korvale
