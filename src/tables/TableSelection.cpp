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

void TableSelection::select(int first, int last, QItemSelectionModel::SelectionFlags command) {
    const QAbstractItemModel& model = *m_selection.model();
    const int lastRow = std::min(last, model.rowCount() - 1);
    QItemSelection selection;
    if (first <= lastRow && model.columnCount() > 0) {
        selection.select(model.index(first, 0), model.index(lastRow, model.columnCount() - 1));
    }
    m_selection.select(selection, command);
}

TableSelection::Keeper::~Keeper() {
    if (m_selection.currentIndex().row() != m_currentRow) {
        m_selection.clearCurrentIndex();
    }
}

} // namespace korvale
