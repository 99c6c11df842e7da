#include "tables/VisibleCells.h"

#include <utility>

namespace korvale {

void VisibleCells::show(int first, int last, const std::function<Row(int row)>& make) {
    recycleOutside(first, last);
    if (m_rows.empty()) {
        m_firstRow = first;
    }
    while (m_firstRow > first) {
        m_rows.push_front(make(m_firstRow - 1));
        --m_firstRow;
    }
    while (lastRow() < last) {
        m_rows.push_back(make(lastRow() + 1));
    }
}

void VisibleCells::recycleOutside(int first, int last) {
    while (!m_rows.empty() && (m_firstRow < first || m_firstRow > last)) {
        recycle(m_rows.front());
        m_rows.pop_front();
        ++m_firstRow;
    }
    while (!m_rows.empty() && lastRow() > last) {
        recycle(m_rows.back());
        m_rows.pop_back();
    }
}

void VisibleCells::recycleAll() {
    for (Row& row : m_rows) {
        recycle(row);
    }
    m_rows.clear();
}

const CellView* VisibleCells::cell(int row, int column) const {
    if (row < m_firstRow || row > lastRow()) {
        return nullptr;
    }
    const Row& cells = m_rows[static_cast<std::size_t>(row - m_firstRow)];
    return cells[static_cast<std::size_t>(column)].get();
}

void VisibleCells::recycle(Row& row) {
    for (std::unique_ptr<CellView>& cell : row) {
        m_pool.put(std::move(cell));
    }
}

} // namespace korvale
