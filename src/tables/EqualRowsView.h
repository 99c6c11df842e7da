#pragma once

#include "tables/RowStack.h"

#include <QTableView>

namespace korvale {

/// A table view whose cost depends on the rows in sight, not on the rows it has: rows are equally
/// high and positions are computed. QTableView would keep a record per row in its vertical header
/// and rebuild them at each reset, so everything vertical is done here and that header stays
/// without sections; QTableView's own row functions (rowAt, rowHeight, ...) therefore know no rows.
class EqualRowsView : public QTableView {
    Q_OBJECT

public:
    [[nodiscard]] int heightOfRows() const { return m_rows.rowHeight(); }

    // QAbstractItemView, for equally high rows.
    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    [[nodiscard]] QModelIndex indexAt(const QPoint& point) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    /// Letters search nothing: that would ask for the texts of all rows.
    void keyboardSearch(const QString& /*search*/) override {}
    void doItemsLayout() override;

protected:
    explicit EqualRowsView(QWidget* parent = nullptr);

    [[nodiscard]] int rowCount() const;
    /// The row at a height of the viewport; beyond the last one a number that no row has.
    [[nodiscard]] int rowAtY(int y) const;
    /// Over the whole width of the viewport.
    [[nodiscard]] QRect rowRect(int row) const;
    void scrollToRow(int row, ScrollHint hint);
    void scrollToColumn(int column);

    void changeEvent(QEvent* event) override;
    void updateGeometries() override;
    [[nodiscard]] int verticalOffset() const override;
    [[nodiscard]] bool isIndexHidden(const QModelIndex& index) const override;
    [[nodiscard]] QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;

private:
    void measureRows();

    RowStack m_rows;
    bool m_inUpdateGeometries = false;
};

} // namespace korvale
