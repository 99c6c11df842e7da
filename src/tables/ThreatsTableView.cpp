#include "tables/ThreatsTableView.h"

#include "platform/SafeText.h"
#include "platform/Texts.h"
#include "tables/CellDelegate.h"
#include "tables/CustHeaderView.h"
#include "tables/KeyEvents.h"
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
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace korvale {

ThreatsTableView::ThreatsTableView(QWidget* parent)
    : EqualRowsView(parent),
      m_header(new CustHeaderView(this)),
      m_model(new RowsModel(*this)),
      m_focus(*this) {
    setPalette(tablePalette());
    setFrameShape(NoFrame);
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
    setModel(m_model);
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
    EqualRowsView::selectionChanged(selected, deselected);
    if (m_source != nullptr) {
        m_source->tableViewSelectionDidChange(*this);
    }
}

void ThreatsTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (m_reloading) {
        return; // the same place or none: no place to scroll to, no news for a reader
    }
    if (hasFocus()) {
        EqualRowsView::currentChanged(current, previous);
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

// Scrolling and keys

void ThreatsTableView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (m_reloading) {
        return;
    }
    if (m_focus.isByMouse() && index.isValid()) {
        scrollToRow(index.row(), hint); // sideways it would move what was clicked on
    } else {
        EqualRowsView::scrollTo(index, hint);
    }
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
        EqualRowsView::keyPressEvent(event);
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
    EqualRowsView::mouseDoubleClickEvent(event);
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
    EqualRowsView::mousePressEvent(event);
}

/// Draws anew what shows the focus: the current row, or the table around none.
void ThreatsTableView::updateFocus() {
    viewport()->update(currentIndex().isValid() ? rowRect(currentIndex().row())
                                                : viewport()->rect());
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
    return EqualRowsView::viewportEvent(event);
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
