#include "tables/ThreatsTableView.h"

#include "platform/Texts.h"
#include "tables/CellDelegate.h"
#include "tables/CustHeaderView.h"
#include "tables/RowsModel.h"
#include "tables/SafeText.h"
#include "tables/TableDataSource.h"

#include <QAbstractButton>
#include <QFocusEvent>
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
namespace {

constexpr int rowPadding = 11;
constexpr int columnPadding = 16;
constexpr QRgb lightWindow = 0xFFEFEFEF;
constexpr QRgb focusColor = 0xFF8FB4E8;
constexpr QRgb placeholderColor = 0xFF6B6B6B;

/// The vertical header that QTableView insists on, without a section for any row.
class RowlessHeader final : public QHeaderView {
public:
    explicit RowlessHeader(QWidget* parent) : QHeaderView(Qt::Vertical, parent) {}
    void setModel(QAbstractItemModel* /*model*/) override {}
    void setSelectionModel(QItemSelectionModel* /*model*/) override {}
};

QPalette lightPalette() {
    QPalette palette{QColor(lightWindow)};
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}

} // namespace

ThreatsTableView::ThreatsTableView(QWidget* parent)
    : QTableView(parent), header_(new CustHeaderView(this)), model_(new RowsModel(*this)) {
    setPalette(lightPalette());
    setFrameShape(NoFrame);
    setVerticalHeader(new RowlessHeader(this));
    verticalHeader()->hide();
    setHorizontalHeader(header_);
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
    setModel(model_);
    measureRows();
    connect(header_, &QHeaderView::sectionClicked, this, &ThreatsTableView::sortByColumn);
}

ThreatsTableView::~ThreatsTableView() = default;

void ThreatsTableView::setDataSource(TableDataSource* source) {
    source_ = source;
    if (source_ == nullptr) {
        reloadData();
    }
}

void ThreatsTableView::setColumns(std::span<const TableColumn> columns) {
    columns_ = columns;
    recycleAll();
    model_->reload(0);
    const int character = fontMetrics().averageCharWidth();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const int section = static_cast<int>(i);
        header_->setHeaderCell(section, CustHeaderCell(QString::fromLatin1(columns[i].titleKey)));
        header_->resizeSection(section, columns[i].width * character + columnPadding);
    }
}

void ThreatsTableView::setPlaceholder(const QString& text) {
    placeholder_ = text;
    viewport()->update();
}

void ThreatsTableView::setAllowsMultipleSelection(bool allowed) {
    setSelectionMode(allowed ? ExtendedSelection : SingleSelection);
}

void ThreatsTableView::reloadData() {
    const RowIndexes selected = selectedRowIndexes();
    const int currentRow = currentIndex().row();
    const int currentColumn = currentIndex().column();
    recycleAll();
    reloading_ = true;
    model_->reload(source_ != nullptr ? source_->numberOfRowsInTableView(*this) : 0);
    restore(selected, model_->index(currentRow, currentColumn));
    doItemsLayout();
    reloading_ = false;
    const QString hint = rowCount() == 0 ? placeholder_ : localizedText("HPS_TableHint");
    if (accessibleDescription() != hint) {
        setAccessibleDescription(hint); // each call tells the screen reader
    }
}

void ThreatsTableView::restore(const RowIndexes& selected, const QModelIndex& current) {
    const int lastRow = rowCount() - 1;
    QItemSelection selection;
    for (const RowIndexes::Range& range : selected.ranges()) {
        if (range.first <= lastRow) {
            selection.select(model_->index(range.first, 0),
                             model_->index(std::min(range.last, lastRow), 0));
        }
    }
    if (!selection.isEmpty()) {
        selectionModel()->select(selection,
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    if (current.isValid()) {
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    }
}

RowIndexes ThreatsTableView::selectedRowIndexes() const {
    std::vector<RowIndexes::Range> ranges;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        ranges.push_back({range.top(), range.bottom()});
    }
    return RowIndexes(std::move(ranges));
}

void ThreatsTableView::selectionChanged(const QItemSelection& selected,
                                        const QItemSelection& deselected) {
    if (reloading_) {
        return;
    }
    QTableView::selectionChanged(selected, deselected);
    if (source_ != nullptr) {
        source_->tableViewSelectionDidChange(*this);
    }
}

void ThreatsTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    // The frame around the current row goes beyond the cell that Qt draws anew.
    viewport()->update(rowRect(current.row()));
    viewport()->update(rowRect(previous.row()));
}

void ThreatsTableView::sortByColumn(int column) {
    const RowKey key = columns_[static_cast<std::size_t>(column)].text;
    SortDescriptor chosen{key, true};
    if (!sortDescriptors_.empty() && sortDescriptors_.front().key == key) {
        chosen.ascending = !sortDescriptors_.front().ascending;
    }
    std::erase_if(sortDescriptors_, [key](const SortDescriptor& old) { return old.key == key; });
    sortDescriptors_.insert(sortDescriptors_.begin(), chosen);
    for (int section = 0; section < model_->columnCount(); ++section) {
        header_->setSortIndicator(section, section == column ? std::optional(chosen.ascending)
                                                             : std::nullopt);
    }
    if (source_ != nullptr) {
        source_->sortDescriptorsDidChange(*this);
    }
}

// Cells

std::unique_ptr<CellView> ThreatsTableView::makeView(QLatin1String identifier) {
    return pool_.take(identifier);
}

const CellView* ThreatsTableView::visibleCell(int row, int column) const {
    const int position = row - firstVisible_;
    if (position < 0 || position >= static_cast<int>(visible_.size())) {
        return nullptr;
    }
    return visible_[static_cast<std::size_t>(position)][static_cast<std::size_t>(column)].get();
}

void ThreatsTableView::recycle(CellRow& row) {
    for (std::unique_ptr<CellView>& cell : row) {
        pool_.put(std::move(cell));
    }
}

void ThreatsTableView::recycleAll() {
    for (CellRow& row : visible_) {
        recycle(row);
    }
    visible_.clear();
    viewport()->update();
}

void ThreatsTableView::prepareCells() {
    const int first = rowAtY(0);
    const int last = std::min(rowAtY(viewport()->height() - 1), rowCount() - 1);
    const auto lastVisible = [this] {
        return firstVisible_ + static_cast<int>(visible_.size()) - 1;
    };
    while (!visible_.empty() && (firstVisible_ < first || firstVisible_ > last)) {
        recycle(visible_.front());
        visible_.pop_front();
        ++firstVisible_;
    }
    while (!visible_.empty() && lastVisible() > last) {
        recycle(visible_.back());
        visible_.pop_back();
    }
    const auto makeRow = [this](int row) {
        CellRow cells;
        for (const TableColumn& column : columns_) {
            cells.push_back(
                source_->viewForTableColumn(*this, QLatin1String(column.identifier), row));
        }
        return cells;
    };
    if (visible_.empty()) {
        firstVisible_ = first;
    }
    while (firstVisible_ > first) {
        visible_.push_front(makeRow(firstVisible_ - 1));
        --firstVisible_;
    }
    while (lastVisible() < last) {
        visible_.push_back(makeRow(lastVisible() + 1));
    }
}

// Painting

void ThreatsTableView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    if (rowCount() == 0) {
        paintPlaceholder(painter);
        return;
    }
    prepareCells();
    const QRect dirty = event->rect();
    const int last = std::min(rowAtY(dirty.bottom()), rowCount() - 1);
    for (int row = rowAtY(dirty.top()); row <= last; ++row) {
        paintRow(painter, row, dirty);
    }
}

void ThreatsTableView::paintRow(QPainter& painter, int row, const QRect& dirty) {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const bool active = isActiveWindow() && hasFocus();
    option.state.setFlag(QStyle::State_Active, active);
    option.state.setFlag(QStyle::State_Selected,
                         selectionModel()->isSelected(model_->index(row, 0)));
    QRect whole;
    for (int column = 0; column < model_->columnCount(); ++column) {
        const QModelIndex index = model_->index(row, column);
        option.rect = visualRect(index);
        whole |= option.rect;
        if (option.rect.intersects(dirty)) {
            itemDelegate()->paint(&painter, option, index);
        }
    }
    if (active && showsCurrentRow_ && row == currentIndex().row()) {
        painter.setPen(QColor(focusColor));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(whole.adjusted(0, 0, -1, -1));
    }
}

void ThreatsTableView::paintPlaceholder(QPainter& painter) {
    constexpr int margin = 24;
    painter.setPen(QColor(placeholderColor));
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, placeholder_);
}

// Geometry of equally high rows

int ThreatsTableView::rowCount() const {
    return model_->rowCount();
}

int ThreatsTableView::verticalOffset() const {
    return verticalScrollBar()->value();
}

int ThreatsTableView::rowAtY(int y) const {
    const std::int64_t absolute = std::int64_t{y} + verticalOffset();
    return static_cast<int>(std::max<std::int64_t>(absolute, 0) / rowHeight_);
}

void ThreatsTableView::measureRows() {
    rowHeight_ = fontMetrics().height() + rowPadding;
}

QRect ThreatsTableView::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    const std::int64_t y = std::int64_t{index.row()} * rowHeight_ - verticalOffset();
    constexpr std::int64_t farthest = std::numeric_limits<int>::max() / 2;
    return {header_->sectionViewportPosition(index.column()),
            static_cast<int>(std::clamp(y, -farthest, farthest)),
            header_->sectionSize(index.column()), rowHeight_};
}

QRect ThreatsTableView::rowRect(int row) const {
    const QRect cell = visualRect(model_->index(row, 0));
    return {0, cell.top(), viewport()->width(), cell.height()};
}

QModelIndex ThreatsTableView::indexAt(const QPoint& point) const {
    return point.y() < 0 ? QModelIndex()
                         : model_->index(rowAtY(point.y()), header_->logicalIndexAt(point.x()));
}

int ThreatsTableView::sizeHintForColumn(int column) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const int rows = static_cast<int>(visible_.size());
    int widest = 0;
    for (int row = firstVisible_; row < firstVisible_ + rows; ++row) {
        const QSize size = itemDelegate()->sizeHint(option, model_->index(row, column));
        widest = std::max(widest, size.width());
    }
    return widest;
}

bool ThreatsTableView::isIndexHidden(const QModelIndex& index) const {
    return !index.isValid();
}

void ThreatsTableView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid() || reloading_) {
        return;
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

void ThreatsTableView::doItemsLayout() {
    // Not QTableView's, which asks the vertical header.
    QAbstractItemView::doItemsLayout(); // NOLINT(bugprone-parent-virtual-call)
}

void ThreatsTableView::updateGeometries() {
    if (std::exchange(inUpdateGeometries_, true)) {
        return; // the margins below change the geometry in turn
    }
    const int headerHeight = header_->sizeHint().height();
    setViewportMargins(0, headerHeight, 0, 0);
    const QRect area = viewport()->geometry();
    header_->setGeometry(area.left(), area.top() - headerHeight, area.width(), headerHeight);

    const std::int64_t height = std::int64_t{rowCount()} * rowHeight_;
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    verticalScrollBar()->setRange(
        0, static_cast<int>(std::clamp<std::int64_t>(height - area.height(), 0, most)));
    verticalScrollBar()->setPageStep(std::max(rowHeight_, area.height() - rowHeight_));
    verticalScrollBar()->setSingleStep(rowHeight_);
    horizontalScrollBar()->setRange(0, std::max(0, header_->length() - area.width()));
    horizontalScrollBar()->setPageStep(area.width());
    horizontalScrollBar()->setSingleStep(rowHeight_);
    inUpdateGeometries_ = false;
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
        return model_->index(0, 0);
    }
    const int page = std::max(1, viewport()->height() / rowHeight_ - 1);
    int row = current.row();
    int column = current.column();
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
    return model_->index(std::clamp(row, 0, rowCount() - 1),
                         std::clamp(column, 0, model_->columnCount() - 1));
}

void ThreatsTableView::setSelection(const QRect& rect,
                                    QItemSelectionModel::SelectionFlags command) {
    const int top = rowAtY(std::min(rect.top(), rect.bottom()));
    const int bottom = std::min(rowAtY(std::max(rect.top(), rect.bottom())), rowCount() - 1);
    QItemSelection selection;
    if (top <= bottom && model_->columnCount() > 0) {
        selection.select(model_->index(top, 0), model_->index(bottom, model_->columnCount() - 1));
    }
    selectionModel()->select(selection, command);
}

QRegion ThreatsTableView::visualRegionForSelection(const QItemSelection& selection) const {
    const QRect area = viewport()->rect();
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const QRect first = visualRect(range.topLeft());
        const QRect last = visualRect(model_->index(range.bottom(), 0));
        region += QRect(area.left(), first.top(), area.width(), last.bottom() - first.top() + 1)
                      .intersected(area);
    }
    return region;
}

void ThreatsTableView::keyPressEvent(QKeyEvent* event) {
    showsCurrentRow_ = true;
    // An item view copies its current cell and searches for what Escape types; neither happens
    // here.
    const bool forResponder = event->matches(QKeySequence::Copy) || event->key() == Qt::Key_Escape;
    event->setAccepted(!forResponder);
    if (!forResponder) {
        QTableView::keyPressEvent(event);
    }
    if (!event->isAccepted() && nextResponder_ != nullptr) {
        nextResponder_->keyDown(*event);
    }
}

// Events

void ThreatsTableView::focusInEvent(QFocusEvent* event) {
    showsCurrentRow_ =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QTableView::focusInEvent(event);
}

void ThreatsTableView::mousePressEvent(QMouseEvent* event) {
    showsCurrentRow_ = false;
    QTableView::mousePressEvent(event);
}

void ThreatsTableView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    const bool textSizeMayChange =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (textSizeMayChange && model_ != nullptr) {
        measureRows();
        updateGeometries();
    }
}

bool ThreatsTableView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        showToolTip(help->globalPos(), help->pos());
        return true;
    }
    return QTableView::viewportEvent(event);
}

void ThreatsTableView::showToolTip(const QPoint& globalPosition, const QPoint& position) {
    const QModelIndex index = indexAt(position);
    const CellView* cell = index.isValid() ? visibleCell(index.row(), index.column()) : nullptr;
    if (cell == nullptr) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(globalPosition, toolTipMarkup(cell->toolTip()), viewport(),
                       visualRect(index));
}

} // namespace korvale
