#pragma once

#include "tables/EqualRowsView.h"
#include "tables/RowIndexes.h"
#include "tables/SortDescriptor.h"
#include "tables/TableDescription.h"
#include "tables/TableFocus.h"
#include "tables/TableSelection.h"
#include "tables/VisibleCells.h"

#include <memory>
#include <span>

QT_BEGIN_NAMESPACE
class QGestureEvent;
QT_END_NAMESPACE

namespace korvale {

class CustHeaderView;
class RowsModel;
class TableDataSource;

/// A table that asks its data source for the cells in sight, and draws, sorts, selects and opens
/// rows. Light in both appearances; one selected row is a whole row.
class ThreatsTableView : public EqualRowsView {
    Q_OBJECT

public:
    explicit ThreatsTableView(QWidget* parent = nullptr);
    ~ThreatsTableView() override;

    /// `source` is not owned and outlives the view or is taken away with nullptr.
    void setDataSource(TableDataSource* source);
    /// The columns, left to right; titles are keys until a header cell is installed for them.
    void setColumns(std::span<const TableColumn> columns);
    [[nodiscard]] std::span<const TableColumn> columns() const { return m_columns; }
    [[nodiscard]] CustHeaderView& header() const { return *m_header; }
    /// The quiet line in the middle while there are no rows, for screen readers too.
    void setPlaceholder(const QString& text);
    void setAllowsMultipleSelection(bool allowed);
    /// Who gets the keys that the view has no use for; nullptr for nobody. Not owned.
    void setNextResponder(TableDataSource* responder) { m_nextResponder = responder; }

    /// Takes row count and cells anew. Scroll position, current and selected positions stay as far
    /// as they exist; that is no selection change.
    void reloadData();

    [[nodiscard]] RowIndexes selectedRowIndexes() const;
    [[nodiscard]] const SortDescriptors& sortDescriptors() const { return m_sortDescriptors; }
    /// What a click on the title of `column` does: sorts by it, or turns the order.
    void sortByColumn(int column);
    /// Sorts anew; none: the rows stand as they came.
    void setSortDescriptors(SortDescriptors descriptors);

    [[nodiscard]] TableDataSource* dataSource() const { return m_source; }

    /// Shows what else there is to say of the current cell, beside it; nothing without one.
    void showCurrentToolTip();

    /// A cell out of sight with that identifier, to be used again; nullptr when there is none.
    [[nodiscard]] std::unique_ptr<CellView> makeView(QLatin1String identifier);
    /// The cell as it is in sight now; nullptr when it is not.
    [[nodiscard]] const CellView* visibleCell(int row, int column) const {
        return m_cells.cell(row, column);
    }

    [[nodiscard]] std::size_t pooledCells() const { return m_cells.pool().size(); }

    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    /// Makes a row the current one, in sight, without selecting it.
    void goToRow(int row);

Q_SIGNALS:
    /// Enter, Space or a double click on the current row; by a key or by the mouse.
    void rowOpened(bool byKey);
    /// Another row is the current one; not when a reload moves what stands in it.
    void currentRowChanged();
    void contextMenuWanted(const QPoint& globalPosition);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    /// The widest text in sight.
    [[nodiscard]] int sizeHintForColumn(int column) const override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void prepareCells();
    void recycleAll();
    void describe();
    void paintRow(QPainter& painter, int row, const QRect& dirty);
    void paintPlaceholder(QPainter& painter);
    void updateFocus();
    bool openByKey(const QKeyEvent& event);
    void showContextMenu(const QPoint& place);
    void showToolTip(const QModelIndex& index, const QPoint& globalPosition);
    bool gestureEvent(QGestureEvent& event);

    std::span<const TableColumn> m_columns;
    SortDescriptors m_sortDescriptors;
    QString m_placeholder;
    CustHeaderView* m_header = nullptr;
    RowsModel* m_model = nullptr;
    TableDataSource* m_source = nullptr;
    TableDataSource* m_nextResponder = nullptr;
    VisibleCells m_cells;
    TableFocus m_focus;
    bool m_reloading = false;
};

} // namespace korvale
