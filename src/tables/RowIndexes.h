#pragma once

#include <cstddef>
#include <vector>

namespace korvale {

/// A set of row positions, held as ascending, disjoint ranges: "all of a million rows" is one
/// entry.
class RowIndexes {
public:
    /// Both ends belong to the range.
    struct Range {
        int first = 0;
        int last = 0;
        friend bool operator==(const Range&, const Range&) = default;
    };

    RowIndexes() = default;
    /// `ranges` in any order; overlapping and neighbouring ones are joined.
    explicit RowIndexes(std::vector<Range> ranges);

    [[nodiscard]] const std::vector<Range>& ranges() const { return m_ranges; }
    [[nodiscard]] bool isEmpty() const { return m_ranges.empty(); }
    [[nodiscard]] std::size_t count() const;
    /// The greatest position; -1 when there is none.
    [[nodiscard]] int last() const { return m_ranges.empty() ? -1 : m_ranges.back().last; }

    friend bool operator==(const RowIndexes&, const RowIndexes&) = default;

private:
    std::vector<Range> m_ranges;
};

} // namespace korvale
