#pragma once

#include <cstdint>

namespace korvale {

/// Equally high rows, one below the other. Positions are pixels from the top of the first row and
/// are computed, so rows cost nothing.
class RowStack {
public:
    /// At least 1.
    void setRowHeight(int height) { m_rowHeight = height; }
    [[nodiscard]] int rowHeight() const { return m_rowHeight; }

    /// The row at `y`, above the first one 0; may lie behind the last.
    [[nodiscard]] int rowAt(std::int64_t y) const;
    [[nodiscard]] std::int64_t top(int row) const { return std::int64_t{row} * m_rowHeight; }
    /// The whole rows that fit into `height`, less one that stays in sight when paging; at least 1.
    [[nodiscard]] int pageOf(int height) const;
    /// The greatest scroll position of `rows` in a view of `height`; cut to what scroll bars hold.
    [[nodiscard]] int scrollRange(int rows, int height) const;

private:
    int m_rowHeight = 1;
};

} // namespace korvale
