#pragma once

#include "tables/RowIndexes.h"

#include <QItemSelectionModel>

namespace korvale {

/// Which rows of a table are selected, as row positions instead of the toolkit's indexes. Main
/// thread.
class TableSelection {
public:
    /// What outlives a reload.
    struct Kept {
        RowIndexes rows;
        int currentRow = -1;
        int currentColumn = -1;
    };

    /// `selection` is the view's and has a model; it outlives the object.
    explicit TableSelection(QItemSelectionModel& selection) : m_selection(selection) {}

    [[nodiscard]] RowIndexes rows() const;
    [[nodiscard]] bool contains(int row) const;
    /// Selects rows `first` to `last`, as far as they exist, as `command` says.
    void select(int first, int last, QItemSelectionModel::SelectionFlags command);

    [[nodiscard]] Kept keep() const;
    /// Selects again what still exists of `kept`.
    void restore(const Kept& kept);

private:
    [[nodiscard]] QItemSelection wholeRows(int first, int last) const;

    QItemSelectionModel& m_selection;
};

} // namespace korvale
