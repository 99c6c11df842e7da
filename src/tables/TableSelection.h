#pragma once

#include "tables/RowIndexes.h"

#include <QItemSelectionModel>

namespace korvale {

/// Which rows of a table are selected, as row positions instead of the toolkit's indexes. Main
/// thread.
class TableSelection {
public:
    /// `selection` is the view's and has a model; it outlives the object.
    explicit TableSelection(QItemSelectionModel& selection) : m_selection(selection) {}

    [[nodiscard]] RowIndexes rows() const;
    [[nodiscard]] bool contains(int row) const;
    /// Selects rows `first` to `last`, as far as they exist, as `command` says.
    void select(int first, int last, QItemSelectionModel::SelectionFlags command);

    /// While it lives, rows may come and go: positions stay selected as far as they exist, and a
    /// current row that goes is followed by none, where the toolkit would take its neighbour.
    class Keeper {
    public:
        explicit Keeper(QItemSelectionModel& selection)
            : m_selection(selection), m_currentRow(selection.currentIndex().row()) {}
        Keeper(const Keeper&) = delete;
        Keeper& operator=(const Keeper&) = delete;
        ~Keeper();

    private:
        QItemSelectionModel& m_selection;
        int m_currentRow;
    };

private:
    QItemSelectionModel& m_selection;
};

} // namespace korvale
