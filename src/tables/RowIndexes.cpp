#include "tables/RowIndexes.h"

#include <algorithm>
#include <utility>

namespace korvale {

RowIndexes::RowIndexes(std::vector<Range> ranges) {
    std::sort(ranges.begin(), ranges.end(),
              [](const Range& a, const Range& b) { return a.first < b.first; });
    for (const Range& range : ranges) {
        if (!ranges_.empty() && range.first <= ranges_.back().last + 1) {
            ranges_.back().last = std::max(ranges_.back().last, range.last);
        } else {
            ranges_.push_back(range);
        }
    }
}

std::size_t RowIndexes::count() const {
    std::size_t total = 0;
    for (const Range& range : ranges_) {
        total += static_cast<std::size_t>(range.last - range.first) + 1;
    }
    return total;
}

} // namespace korvale
