#include "tables/ThreatsTableController.h"

#include "platform/Texts.h"
#include "tables/CustHeaderView.h"
#include "tables/KeyEvents.h"
#include "tables/RowCopy.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <limits>
#include <utility>

namespace korvale {
namespace {

bool isCopyKey(const QKeyEvent& event, CopyModifiers rule) {
    const std::uint32_t flags = modifierFlags(event);
    const bool modifiersFit = rule == CopyModifiers::CommandHeld
                                  ? (flags & CommandFlag) != 0
                                  : (flags & DeviceIndependentFlags) == CommandFlag;
    return modifiersFit && characters(event) == u"c";
}

} // namespace

ThreatsTableController::ThreatsTableController(const TableDescription& description,
                                               RememberedSelections& selections, QObject* parent)
    : QObject(parent), description_(description), selections_(selections) {}

ThreatsTableController::~ThreatsTableController() {
    if (tableView_ != nullptr) {
        tableView_->setDataSource(nullptr);
        tableView_->setNextResponder(nullptr);
    }
}

void ThreatsTableController::awakeFromNib() {
    if (tableView_ == nullptr) {
        return;
    }
    ThreatsTableView& view = *tableView_;
    view.setColumns(description_.columns);
    for (std::size_t i = 0; i < description_.columns.size(); ++i) {
        const QString title = localizedText(description_.columns[i].titleKey);
        view.header().setHeaderCell(static_cast<int>(i), CustHeaderCell(title));
    }
    view.setShowGrid(false); // no space between cells
    view.setNextResponder(this);
    view.setAccessibleName(localizedText(description_.nameKey));
    view.setPlaceholder(localizedText(description_.emptyKey));
    view.setDataSource(this);
    // The list exists, empty, since construction: rows that came before the window show now.
    updateView();
}

void ThreatsTableController::loadData(RowBatchPtr rows) {
    loadData(tableView_, std::move(rows));
}

void ThreatsTableController::addData(RowBatchPtr rows) {
    addData(tableView_, std::move(rows));
}

void ThreatsTableController::loadData(const ThreatsTableView* tableView, RowBatchPtr rows) {
    currentRows_ = RowList(std::move(rows));
    if (tableView != nullptr) {
        currentRows_.sort(tableView->sortDescriptors());
    }
}

void ThreatsTableController::addData(const ThreatsTableView* /*tableView*/, RowBatchPtr rows) {
    if (!rows || rows->size() == 0) {
        return;
    }
    // Not sorted: newest batches stay on top until the user next changes the order.
    currentRows_.prepend(std::move(rows));
    removeExtraData();
}

void ThreatsTableController::removeAll() {
    currentRows_ = RowList();
}

void ThreatsTableController::removeExtraData() {
    currentRows_.truncate(maximumRows);
}

void ThreatsTableController::updateView() {
    if (tableView_ != nullptr) {
        tableView_->reloadData();
        tableView_->setAllowsMultipleSelection(true);
    }
}

int ThreatsTableController::numberOfRowsInTableView(const ThreatsTableView& /*tableView*/) const {
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(currentRows_.size(), most));
}

std::unique_ptr<CellView> ThreatsTableController::viewForTableColumn(ThreatsTableView& tableView,
                                                                     QLatin1String identifier,
                                                                     int row) {
    std::unique_ptr<CellView> cell = tableView.makeView(CellView::reuseIdentifier);
    if (!cell) {
        cell = std::make_unique<CellView>(CellView::reuseIdentifier);
    }
    cell->setTextColor(Qt::black);
    cell->setBordered(false);
    const float grey = row % 2 == 0 ? 1.0F : 0.5F; // faint stripes
    cell->setBackgroundColor(QColor::fromRgbF(grey, grey, grey, 0.1F));
    fillCell(*cell, column(identifier), row);
    return cell;
}

void ThreatsTableController::fillCell(CellView& cell, const TableColumn* column, int row) const {
    const QString text =
        column != nullptr ? value(row, column->text).value_or(QString()) : QString();
    cell.setText(text);
    cell.setToolTip(column != nullptr ? toolTip(*column, row).value_or(QString()) : QString());
    if (column != nullptr) {
        cell.setTextColor(textColor(*column, text));
    }
    cell.setLineBreakMode(LineBreakMode::TruncateTail);
}

std::optional<QString> ThreatsTableController::cellText(QLatin1String identifier, int row) const {
    const TableColumn* found = column(identifier);
    return found != nullptr ? value(row, found->text) : std::nullopt;
}

std::optional<QString> ThreatsTableController::cellToolTip(QLatin1String identifier,
                                                           int row) const {
    const TableColumn* found = column(identifier);
    return found != nullptr ? toolTip(*found, row) : std::nullopt;
}

std::optional<QString> ThreatsTableController::toolTip(const TableColumn& column, int row) const {
    return value(row, column.toolTip);
}

QColor ThreatsTableController::textColor(const TableColumn& /*column*/,
                                         const QString& /*text*/) const {
    return Qt::black;
}

std::optional<QString> ThreatsTableController::value(int row, RowKey key) const {
    return row < 0 ? std::nullopt : currentRows_.text(static_cast<std::size_t>(row), key);
}

const TableColumn* ThreatsTableController::column(QLatin1String identifier) const {
    const auto found = std::find_if(
        description_.columns.begin(), description_.columns.end(),
        [identifier](const TableColumn& c) { return identifier == QLatin1String(c.identifier); });
    return found == description_.columns.end() ? nullptr : &*found;
}

void ThreatsTableController::sortDescriptorsDidChange(ThreatsTableView& tableView) {
    currentRows_.sort(tableView.sortDescriptors());
    tableView.reloadData();
}

void ThreatsTableController::tableViewSelectionDidChange(const ThreatsTableView& tableView) {
    selections_.*description_.selection = tableView.selectedRowIndexes();
}

void ThreatsTableController::keyDown(QKeyEvent& event) {
    if (!isCopyKey(event, description_.copyModifiers)) {
        event.ignore();
        return;
    }
    event.accept();
    const auto text = copiedText(currentRows_, description_, selections_.*description_.selection);
    if (text) {
        QGuiApplication::clipboard()->setText(*text);
    }
}

} // namespace korvale
