#include "tables/TableSelection.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace korvale {

RowIndexes TableSelection::rows() const {
    std::vector<RowIndexes::Range> ranges;
    for (const QItemSelectionRange& range : m_selection.selection()) {
        ranges.push_back({range.top(), range.bottom()});
    }
    return RowIndexes(std::move(ranges));
}

bool TableSelection::contains(int row) const {
    return m_selection.isSelected(m_selection.model()->index(row, 0));
}

QItemSelection TableSelection::wholeRows(int first, int last) const {
    const QAbstractItemModel& model = *m_selection.model();
    const int lastRow = std::min(last, model.rowCount() - 1);
    QItemSelection selection;
    if (first <= lastRow && model.columnCount() > 0) {
        selection.select(model.index(first, 0), model.index(lastRow, model.columnCount() - 1));
    }
    return selection;
}

void TableSelection::select(int first, int last, QItemSelectionModel::SelectionFlags command) {
    m_selection.select(wholeRows(first, last), command);
}

TableSelection::Kept TableSelection::keep() const {
    const QModelIndex current = m_selection.currentIndex();
    return {rows(), current.row(), current.column()};
}

void TableSelection::restore(const Kept& kept) {
    QItemSelection selection;
    for (const RowIndexes::Range& range : kept.rows.ranges()) {
        selection.append(wholeRows(range.first, range.last));
    }
    if (!selection.isEmpty()) {
        m_selection.select(selection, QItemSelectionModel::ClearAndSelect);
    }
    const QModelIndex current = m_selection.model()->index(kept.currentRow, kept.currentColumn);
    if (current.isValid()) {
        m_selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    }
}

} // namespace korvale
