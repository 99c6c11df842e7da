#include "tables/ThreatsTableView.h"

#include "platform/SafeText.h"
#include "platform/Texts.h"
#include "tables/CellDelegate.h"
#include "tables/CustHeaderView.h"
#include "tables/KeyEvents.h"
#include "tables/RowlessHeader.h"
#include "tables/RowsModel.h"
#include "tables/TableDataSource.h"
#include "tables/TableOrder.h"
#include "tables/WindowLook.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QFocusEvent>
#include <QGestureEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace korvale {

ThreatsTableView::ThreatsTableView(QWidget* parent)
    : QTableView(parent),
      m_header(new CustHeaderView(this)),
      m_model(new RowsModel(*this)),
      m_focus(*this) {
    setPalette(tablePalette());
    setFrameShape(NoFrame);
    setVerticalHeader(new RowlessHeader(this));
    setHorizontalHeader(m_header);
    setItemDelegate(new CellDelegate(*this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    for (QAbstractButton* corner : findChildren<QAbstractButton*>()) {
        corner->hide(); // where titles of rows and columns would meet
    }
    setTabKeyNavigation(false);
    setShowGrid(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    setModel(m_model);
    measureRows();
    setAttribute(Qt::WA_InputMethodEnabled, false);
    viewport()->grabGesture(Qt::TapAndHoldGesture);
    connect(m_header, &QHeaderView::sectionClicked, this, &ThreatsTableView::sortByColumn);
    connect(m_header, &CustHeaderView::resetWanted, this, [this] { applyOrder(*this, {}); });
    connect(m_header, &CustHeaderView::sectionFocused, this, &ThreatsTableView::scrollToColumn);
}

ThreatsTableView::~ThreatsTableView() = default;

void ThreatsTableView::setDataSource(TableDataSource* source) {
    m_source = source;
    if (m_source == nullptr) {
        reloadData();
    }
}

void ThreatsTableView::setColumns(std::span<const TableColumn> columns) {
    m_columns = columns;
    recycleAll();
    m_model->reset();
    const int character = fontMetrics().averageCharWidth();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const int section = static_cast<int>(i);
        m_header->setHeaderCell(section, CustHeaderCell(QString::fromLatin1(columns[i].titleKey)));
        m_header->resizeSection(section, columns[i].width * character + look::columnPadding);
    }
}

void ThreatsTableView::setPlaceholder(const QString& text) {
    if (m_placeholder != text) {
        m_placeholder = text;
        viewport()->update();
        describe();
    }
}

void ThreatsTableView::setAllowsMultipleSelection(bool allowed) {
    setSelectionMode(allowed ? ExtendedSelection : SingleSelection);
}

void ThreatsTableView::reloadData() {
    recycleAll();
    m_reloading = true;
    {
        const TableSelection::Keeper keeper(*selectionModel());
        m_model->reload(m_source != nullptr ? m_source->numberOfRowsInTableView(*this) : 0);
    }
    doItemsLayout();
    m_reloading = false;
    // For screen readers it is a new model all the same: cells they remember hold other texts.
    QAccessibleTableModelChangeEvent reset(this, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&reset);
    describe();
}

void ThreatsTableView::describe() {
    const QString hint = rowCount() == 0 ? m_placeholder : localizedText("HPS_TableHint");
    if (accessibleDescription() != hint) {
        setAccessibleDescription(hint); // each call tells the screen reader
    }
}

RowIndexes ThreatsTableView::selectedRowIndexes() const {
    return TableSelection(*selectionModel()).rows();
}

void ThreatsTableView::selectionChanged(const QItemSelection& selected,
                                        const QItemSelection& deselected) {
    if (m_reloading) {
        return;
    }
    QTableView::selectionChanged(selected, deselected);
    if (m_source != nullptr) {
        m_source->tableViewSelectionDidChange(*this);
    }
}

void ThreatsTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (m_reloading) {
        return; // the same place or none: no place to scroll to, no news for a reader
    }
    if (hasFocus()) {
        QTableView::currentChanged(current, previous);
    } else {
        // Not QTableView's, which tells screen readers that the focus is here.
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QAbstractItemView::currentChanged(current, previous);
    }
    if (!current.isValid() || !previous.isValid()) {
        viewport()->update(); // the frame is around all of it
        Q_EMIT currentRowChanged();
        return;
    }
    // The frame around the current row goes beyond the cell that Qt draws anew.
    viewport()->update(rowRect(current.row()));
    viewport()->update(rowRect(previous.row()));
    if (current.row() != previous.row()) {
        Q_EMIT currentRowChanged();
    }
}

void ThreatsTableView::goToRow(int row) {
    selectionModel()->setCurrentIndex(m_model->index(row, std::max(0, currentIndex().column())),
                                      QItemSelectionModel::NoUpdate);
}

void ThreatsTableView::sortByColumn(int column) {
    SortDescriptors descriptors = m_sortDescriptors;
    sortFirstBy(descriptors, m_columns[static_cast<std::size_t>(column)].text);
    setSortDescriptors(std::move(descriptors));
}

void ThreatsTableView::setSortDescriptors(SortDescriptors descriptors) {
    m_sortDescriptors = std::move(descriptors);
    for (int section = 0; section < m_model->columnCount(); ++section) {
        const bool decides =
            !m_sortDescriptors.empty() &&
            m_sortDescriptors.front().key == m_columns[static_cast<std::size_t>(section)].text;
        m_header->setSortIndicator(
            section, decides ? std::optional(m_sortDescriptors.front().ascending) : std::nullopt);
    }
    if (m_source != nullptr) {
        m_source->sortDescriptorsDidChange(*this);
    }
}

// Cells

std::unique_ptr<CellView> ThreatsTableView::makeView(QLatin1String identifier) {
    return m_cells.pool().take(identifier);
}

void ThreatsTableView::recycleAll() {
    m_cells.recycleAll();
    viewport()->update();
}

void ThreatsTableView::prepareCells() {
    const int last = std::min(rowAtY(viewport()->height() - 1), rowCount() - 1);
    m_cells.show(rowAtY(0), last, [this](int row) {
        VisibleCells::Row cells;
        for (const TableColumn& column : m_columns) {
            cells.push_back(
                m_source->viewForTableColumn(*this, QLatin1String(column.identifier), row));
        }
        return cells;
    });
}

// Painting

void ThreatsTableView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    if (rowCount() == 0) {
        paintPlaceholder(painter);
    } else {
        prepareCells();
        const QRect dirty = event->rect();
        const int last = std::min(rowAtY(dirty.bottom()), rowCount() - 1);
        for (int row = rowAtY(dirty.top()); row <= last; ++row) {
            paintRow(painter, row, dirty);
        }
    }
    if (m_focus.isShown() && !currentIndex().isValid()) {
        TableFocus::paint(painter, viewport()->rect());
    }
}

void ThreatsTableView::paintRow(QPainter& painter, int row, const QRect& dirty) {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.state.setFlag(QStyle::State_Active, m_focus.isInUse());
    option.state.setFlag(QStyle::State_Selected, TableSelection(*selectionModel()).contains(row));
    QRect whole;
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const QModelIndex index = m_model->index(row, column);
        option.rect = visualRect(index);
        whole |= option.rect;
        if (option.rect.intersects(dirty)) {
            itemDelegate()->paint(&painter, option, index);
        }
    }
    if (m_focus.isShown() && row == currentIndex().row()) {
        TableFocus::paint(painter, whole);
    }
}

void ThreatsTableView::paintPlaceholder(QPainter& painter) {
    constexpr int margin = look::placeholderMargin;
    painter.setPen(QColor(look::quietText));
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, m_placeholder);
}

// Geometry of equally high rows

int ThreatsTableView::rowCount() const {
    return m_model->rowCount();
}

int ThreatsTableView::verticalOffset() const {
    return verticalScrollBar()->value();
}

int ThreatsTableView::rowAtY(int y) const {
    return m_rows.rowAt(std::int64_t{y} + verticalOffset());
}

void ThreatsTableView::measureRows() {
    m_rows.setRowHeight(fontMetrics().height() + look::rowPadding);
}

QRect ThreatsTableView::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    const std::int64_t y = m_rows.top(index.row()) - verticalOffset();
    constexpr std::int64_t farthest = std::numeric_limits<int>::max() / 2;
    return {m_header->sectionViewportPosition(index.column()),
            static_cast<int>(std::clamp(y, -farthest, farthest)),
            m_header->sectionSize(index.column()), m_rows.rowHeight()};
}

QRect ThreatsTableView::rowRect(int row) const {
    const QRect cell = visualRect(m_model->index(row, 0));
    return {0, cell.top(), viewport()->width(), cell.height()};
}

QModelIndex ThreatsTableView::indexAt(const QPoint& point) const {
    return point.y() < 0 ? QModelIndex()
                         : m_model->index(rowAtY(point.y()), m_header->logicalIndexAt(point.x()));
}

int ThreatsTableView::sizeHintForColumn(int column) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    int widest = 0;
    for (int row = m_cells.firstRow(); row <= m_cells.lastRow(); ++row) {
        const QSize size = itemDelegate()->sizeHint(option, m_model->index(row, column));
        widest = std::max(widest, size.width());
    }
    return widest;
}

bool ThreatsTableView::isIndexHidden(const QModelIndex& index) const {
    return !index.isValid();
}

void ThreatsTableView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid() || m_reloading) {
        return;
    }
    if (!m_focus.isByMouse()) {
        scrollToColumn(index.column()); // under the mouse it would move what was clicked on
    }
    const QRect area = viewport()->rect();
    const QRect cell = visualRect(index);
    QScrollBar* bar = verticalScrollBar();
    if (hint == PositionAtCenter) {
        bar->setValue(bar->value() + cell.center().y() - area.center().y());
    } else if (hint == PositionAtTop || cell.top() < area.top()) {
        bar->setValue(bar->value() + cell.top());
    } else if (hint == PositionAtBottom || cell.bottom() > area.bottom()) {
        bar->setValue(bar->value() + cell.bottom() - area.bottom());
    }
}

void ThreatsTableView::scrollToColumn(int column) {
    QScrollBar* bar = horizontalScrollBar();
    const int start = m_header->sectionPosition(column);
    const int end = start + m_header->sectionSize(column);
    // Of a column wider than the table the beginning.
    const int least = std::min(start, end - viewport()->width());
    bar->setValue(std::clamp(bar->value(), least, start));
}

void ThreatsTableView::doItemsLayout() {
    // Not QTableView's, which asks the vertical header.
    QAbstractItemView::doItemsLayout(); // NOLINT(bugprone-parent-virtual-call)
}

void ThreatsTableView::updateGeometries() {
    if (std::exchange(m_inUpdateGeometries, true)) {
        return; // the margins below change the geometry in turn
    }
    const int headerHeight = m_header->sizeHint().height();
    setViewportMargins(0, headerHeight, 0, 0);
    const QRect area = viewport()->geometry();
    m_header->setGeometry(area.left(), area.top() - headerHeight, area.width(), headerHeight);

    const int rowHeight = m_rows.rowHeight();
    verticalScrollBar()->setRange(0, m_rows.scrollRange(rowCount(), area.height()));
    verticalScrollBar()->setPageStep(std::max(rowHeight, area.height() - rowHeight));
    verticalScrollBar()->setSingleStep(rowHeight);
    horizontalScrollBar()->setRange(0, std::max(0, m_header->length() - area.width()));
    horizontalScrollBar()->setPageStep(area.width());
    horizontalScrollBar()->setSingleStep(rowHeight);
    m_inUpdateGeometries = false;
    QAbstractItemView::updateGeometries(); // NOLINT(bugprone-parent-virtual-call): all else is
                                           // above
}

// Selection and keys

QModelIndex ThreatsTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
    if (rowCount() == 0) {
        return {};
    }
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return m_model->index(action == MoveEnd ? rowCount() - 1 : 0, m_header->logicalIndex(0));
    }
    const int page = m_rows.pageOf(viewport()->height());
    int row = current.row();
    int column = m_header->visualIndex(current.column());
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
    column = std::clamp(column, 0, m_model->columnCount() - 1);
    return m_model->index(std::clamp(row, 0, rowCount() - 1), m_header->logicalIndex(column));
}

void ThreatsTableView::setSelection(const QRect& rect,
                                    QItemSelectionModel::SelectionFlags command) {
    TableSelection(*selectionModel())
        .select(rowAtY(std::min(rect.top(), rect.bottom())),
                rowAtY(std::max(rect.top(), rect.bottom())), command);
}

QRegion ThreatsTableView::visualRegionForSelection(const QItemSelection& selection) const {
    const QRect area = viewport()->rect();
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const QRect first = visualRect(range.topLeft());
        const QRect last = visualRect(m_model->index(range.bottom(), 0));
        region += QRect(area.left(), first.top(), area.width(), last.bottom() - first.top() + 1)
                      .intersected(area);
    }
    return region;
}

void ThreatsTableView::keyPressEvent(QKeyEvent* event) {
    updateFocus();
    m_focus.keyPressed();
    if (isToolTipKey(*event)) {
        showCurrentToolTip();
        return;
    }
    if (isContextMenuKey(*event)) {
        showContextMenu(visualRect(currentIndex()).bottomLeft());
        return;
    }
    // An item view copies its current cell and searches for what Escape types; neither happens
    // here.
    const bool forResponder = event->matches(QKeySequence::Copy) || event->key() == Qt::Key_Escape;
    event->setAccepted(!forResponder);
    if (!forResponder) {
        QTableView::keyPressEvent(event);
        if (openByKey(*event)) {
            event->accept();
        }
    }
    if (!event->isAccepted() && m_nextResponder != nullptr) {
        m_nextResponder->keyDown(*event);
    }
}

/// Space has selected the row before, as it does in item views.
bool ThreatsTableView::openByKey(const QKeyEvent& event) {
    const bool isOpening = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
                           event.key() == Qt::Key_Space;
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if (!isOpening || held != Qt::NoModifier || !currentIndex().isValid()) {
        return false;
    }
    Q_EMIT rowOpened(true);
    return true;
}

// Events

void ThreatsTableView::mouseDoubleClickEvent(QMouseEvent* event) {
    QTableView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid() && index == currentIndex()) {
        Q_EMIT rowOpened(false);
    }
}

void ThreatsTableView::contextMenuEvent(QContextMenuEvent* event) {
    showContextMenu(event->reason() == QContextMenuEvent::Keyboard
                        ? visualRect(currentIndex()).bottomLeft()
                        : event->pos());
}

void ThreatsTableView::showContextMenu(const QPoint& place) {
    const QRect area = viewport()->rect(); // the current row may be out of sight
    Q_EMIT contextMenuWanted(
        viewport()->mapToGlobal(QPoint(std::clamp(place.x(), area.left(), area.right()),
                                       std::clamp(place.y(), area.top(), area.bottom()))));
}

void ThreatsTableView::focusInEvent(QFocusEvent* event) {
    m_focus.focusCame(event->reason());
    // Not QTableView's, which would make the first row the current one: Down would skip it then.
    QAbstractScrollArea::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
    viewport()->update();
}

void ThreatsTableView::mousePressEvent(QMouseEvent* event) {
    updateFocus();
    m_focus.mousePressed();
    QTableView::mousePressEvent(event);
}

/// Draws anew what shows the focus: the current row, or the table around none.
void ThreatsTableView::updateFocus() {
    viewport()->update(currentIndex().isValid() ? rowRect(currentIndex().row())
                                                : viewport()->rect());
}

void ThreatsTableView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    const bool textSizeMayChange =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (textSizeMayChange && m_model != nullptr) {
        measureRows();
        updateGeometries();
    }
}

bool ThreatsTableView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        showToolTip(indexAt(help->pos()), help->globalPos());
        return true;
    }
    if (event->type() == QEvent::Gesture) {
        return gestureEvent(*static_cast<QGestureEvent*>(event));
    }
    return QTableView::viewportEvent(event);
}

/// Holding a cell shows its tooltip: a finger cannot hover.
bool ThreatsTableView::gestureEvent(QGestureEvent& event) {
    const auto* hold = static_cast<QTapAndHoldGesture*>(event.gesture(Qt::TapAndHoldGesture));
    if (hold == nullptr || hold->state() != Qt::GestureFinished) {
        return false;
    }
    const QPoint place = hold->position().toPoint(); // on the screen
    showToolTip(indexAt(viewport()->mapFromGlobal(place)), place);
    return true;
}

void ThreatsTableView::showCurrentToolTip() {
    const QModelIndex current = currentIndex();
    if (current.isValid()) {
        scrollTo(current);
        prepareCells();
        showToolTip(current, viewport()->mapToGlobal(visualRect(current).bottomLeft()));
    }
}

void ThreatsTableView::showToolTip(const QModelIndex& index, const QPoint& globalPosition) {
    const CellView* cell = index.isValid() ? visibleCell(index.row(), index.column()) : nullptr;
    if (cell == nullptr) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(globalPosition, toolTipMarkup(cell->toolTip()), viewport(),
                       visualRect(index));
}

} // namespace korvale
