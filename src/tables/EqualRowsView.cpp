#include "tables/EqualRowsView.h"

#include "tables/RowlessHeader.h"
#include "tables/TableSelection.h"
#include "tables/WindowLook.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace korvale {

EqualRowsView::EqualRowsView(QWidget* parent) : QTableView(parent) {
    measureRows();
    setVerticalHeader(new RowlessHeader(this));
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
}

int EqualRowsView::rowCount() const {
    return model() != nullptr ? model()->rowCount() : 0;
}

int EqualRowsView::verticalOffset() const {
    return verticalScrollBar()->value();
}

int EqualRowsView::rowAtY(int y) const {
    return m_rows.rowAt(std::int64_t{y} + verticalOffset());
}

void EqualRowsView::measureRows() {
    m_rows.setRowHeight(fontMetrics().height() + look::rowPadding);
}

QRect EqualRowsView::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    const std::int64_t y = m_rows.top(index.row()) - verticalOffset();
    constexpr std::int64_t farthest = std::numeric_limits<int>::max() / 2;
    return {horizontalHeader()->sectionViewportPosition(index.column()),
            static_cast<int>(std::clamp(y, -farthest, farthest)),
            horizontalHeader()->sectionSize(index.column()), m_rows.rowHeight()};
}

QRect EqualRowsView::rowRect(int row) const {
    const QRect cell = visualRect(model()->index(row, 0));
    return {0, cell.top(), viewport()->width(), cell.height()};
}

QModelIndex EqualRowsView::indexAt(const QPoint& point) const {
    return point.y() < 0 || model() == nullptr
               ? QModelIndex()
               : model()->index(rowAtY(point.y()), horizontalHeader()->logicalIndexAt(point.x()));
}

bool EqualRowsView::isIndexHidden(const QModelIndex& index) const {
    return !index.isValid();
}

void EqualRowsView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (index.isValid()) {
        scrollToColumn(index.column());
        scrollToRow(index.row(), hint);
    }
}

void EqualRowsView::scrollToRow(int row, ScrollHint hint) {
    const QRect area = viewport()->rect();
    const QRect place = rowRect(row);
    QScrollBar* bar = verticalScrollBar();
    if (hint == PositionAtCenter) {
        bar->setValue(bar->value() + place.center().y() - area.center().y());
    } else if (hint == PositionAtTop || place.top() < area.top()) {
        bar->setValue(bar->value() + place.top());
    } else if (hint == PositionAtBottom || place.bottom() > area.bottom()) {
        bar->setValue(bar->value() + place.bottom() - area.bottom());
    }
}

void EqualRowsView::scrollToColumn(int column) {
    QScrollBar* bar = horizontalScrollBar();
    const int start = horizontalHeader()->sectionPosition(column);
    const int end = start + horizontalHeader()->sectionSize(column);
    // Of a column wider than the table the beginning.
    const int least = std::min(start, end - viewport()->width());
    bar->setValue(std::clamp(bar->value(), least, start));
}

void EqualRowsView::doItemsLayout() {
    // Not QTableView's, which asks the vertical header.
    QAbstractItemView::doItemsLayout(); // NOLINT(bugprone-parent-virtual-call)
}

void EqualRowsView::updateGeometries() {
    if (std::exchange(m_inUpdateGeometries, true)) {
        return; // the margins below change the geometry in turn
    }
    const int headerHeight = horizontalHeader()->sizeHint().height();
    setViewportMargins(0, headerHeight, 0, 0);
    const QRect area = viewport()->geometry();
    horizontalHeader()->setGeometry(area.left(), area.top() - headerHeight, area.width(),
                                    headerHeight);

    const int rowHeight = m_rows.rowHeight();
    verticalScrollBar()->setRange(0, m_rows.scrollRange(rowCount(), area.height()));
    verticalScrollBar()->setPageStep(std::max(rowHeight, area.height() - rowHeight));
    verticalScrollBar()->setSingleStep(rowHeight);
    horizontalScrollBar()->setRange(0, std::max(0, horizontalHeader()->length() - area.width()));
    horizontalScrollBar()->setPageStep(area.width());
    horizontalScrollBar()->setSingleStep(rowHeight);
    m_inUpdateGeometries = false;
    QAbstractItemView::updateGeometries(); // NOLINT(bugprone-parent-virtual-call): all else is
                                           // above
}

QModelIndex EqualRowsView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
    if (rowCount() == 0) {
        return {};
    }
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return model()->index(action == MoveEnd ? rowCount() - 1 : 0,
                              horizontalHeader()->logicalIndex(0));
    }
    const int page = m_rows.pageOf(viewport()->height());
    int row = current.row();
    int column = horizontalHeader()->visualIndex(current.column());
    switch (action) {
    case MoveUp:
    case MovePrevious:
        row -= 1;
        break;
    case MoveDown:
    case MoveNext:
        row += 1;
        break;
    case MovePageUp:
        row -= page;
        break;
    case MovePageDown:
        row = row > std::numeric_limits<int>::max() - page ? row : row + page;
        break;
    case MoveHome:
        row = 0;
        break;
    case MoveEnd:
        row = rowCount() - 1;
        break;
    case MoveLeft:
        column -= isRightToLeft() ? -1 : 1;
        break;
    case MoveRight:
        column += isRightToLeft() ? -1 : 1;
        break;
    }
    column = std::clamp(column, 0, model()->columnCount() - 1);
    return model()->index(std::clamp(row, 0, rowCount() - 1),
                          horizontalHeader()->logicalIndex(column));
}

void EqualRowsView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    TableSelection(*selectionModel())
        .select(rowAtY(std::min(rect.top(), rect.bottom())),
                rowAtY(std::max(rect.top(), rect.bottom())), command);
}

QRegion EqualRowsView::visualRegionForSelection(const QItemSelection& selection) const {
    const QRect area = viewport()->rect();
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const QRect first = visualRect(range.topLeft());
        const QRect last = visualRect(model()->index(range.bottom(), 0));
        region += QRect(area.left(), first.top(), area.width(), last.bottom() - first.top() + 1)
                      .intersected(area);
    }
    return region;
}

void EqualRowsView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    const bool textSizeMayChange =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (textSizeMayChange && model() != nullptr) {
        measureRows();
        updateGeometries();
    }
}

} // namespace korvale
