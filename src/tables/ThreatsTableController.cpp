#include "tables/ThreatsTableController.h"

#include "platform/Texts.h"
#include "tables/CustHeaderView.h"
#include "tables/KeyEvents.h"
#include "tables/RowCopy.h"
#include "tables/WindowLook.h"

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
    : QObject(parent),
      m_description(description),
      m_selections(selections),
      m_shownRows(description.columns) {}

ThreatsTableController::~ThreatsTableController() {
    if (m_tableView != nullptr) {
        m_tableView->setDataSource(nullptr);
        m_tableView->setNextResponder(nullptr);
    }
}

void ThreatsTableController::awakeFromNib() {
    if (m_tableView == nullptr) {
        return;
    }
    ThreatsTableView& view = *m_tableView;
    view.setColumns(m_description.columns);
    for (std::size_t i = 0; i < m_description.columns.size(); ++i) {
        const CustHeaderCell cell(localizedText(m_description.columns[i].titleKey));
        CustHeaderView& header = view.header();
        const int section = static_cast<int>(i);
        header.setHeaderCell(section, cell);
        header.resizeSection(section, std::max(header.sectionSize(section),
                                               cell.fittingWidth(header.fontMetrics())));
    }
    view.setShowGrid(false); // no space between cells
    view.setNextResponder(this);
    view.setAccessibleName(localizedText(m_description.nameKey));
    view.setPlaceholder(emptyText());
    view.setDataSource(this);
    // The list exists, empty, since construction: rows that came before the window show now.
    updateView();
}

void ThreatsTableController::setEmptyReason(EmptyReason reason) {
    m_emptyReason = reason;
    if (m_tableView != nullptr) {
        m_tableView->setPlaceholder(emptyText());
    }
}

QString ThreatsTableController::emptyText() const {
    if (m_shownRows.isFiltered() && m_currentRows.size() > 0) {
        return localizedText("HPS_EmptyFind");
    }
    switch (m_emptyReason) {
    case EmptyReason::NotRead:
        return localizedText("HPS_EmptyNotRead");
    case EmptyReason::Unreadable:
        return localizedText("HPS_EmptyUnreadable");
    case EmptyReason::AgentAway:
        return localizedText("HPS_EmptyAgentAway");
    default:
        return localizedText(m_description.emptyKey);
    }
}

void ThreatsTableController::loadData(RowBatchPtr rows) {
    loadData(m_tableView, std::move(rows));
}

void ThreatsTableController::addData(RowBatchPtr rows) {
    addData(m_tableView, std::move(rows));
}

void ThreatsTableController::loadData(const ThreatsTableView* tableView, RowBatchPtr rows) {
    m_currentRows = RowList(std::move(rows));
    m_shownRows.outdate();
    if (tableView != nullptr) {
        m_currentRows.sort(tableView->sortDescriptors());
    }
}

void ThreatsTableController::addData(const ThreatsTableView* /*tableView*/, RowBatchPtr rows) {
    if (!rows || rows->size() == 0) {
        return;
    }
    // Not sorted: newest batches stay on top until the user next changes the order.
    m_currentRows.prepend(std::move(rows));
    m_shownRows.outdate();
    removeExtraData();
}

void ThreatsTableController::removeAll() {
    m_currentRows = RowList();
    m_shownRows.outdate();
}

void ThreatsTableController::removeExtraData() {
    m_currentRows.truncate(mostTableRows);
    m_shownRows.outdate();
}

void ThreatsTableController::setFind(const QString& text) {
    if (!m_shownRows.setText(text, m_currentRows)) {
        return;
    }
    if (m_tableView != nullptr) {
        m_tableView->clearSelection();
        m_tableView->setPlaceholder(emptyText());
        m_tableView->reloadData();
    }
    Q_EMIT rowCountsChanged();
}

RowSnapshot ThreatsTableController::snapshot(bool selectedOnly) const {
    RowIndexes which;
    if (!selectedOnly && shownRowCount() > 0) {
        which = RowIndexes({{0, static_cast<int>(shownRowCount()) - 1}});
    } else if (selectedOnly && m_tableView != nullptr) {
        which = m_tableView->selectedRowIndexes();
    }
    return {m_currentRows, m_shownRows.found(), std::move(which)};
}

void ThreatsTableController::updateView() {
    m_shownRows.refresh(m_currentRows);
    if (m_tableView != nullptr) {
        m_tableView->setPlaceholder(emptyText());
        m_tableView->reloadData();
        m_tableView->setAllowsMultipleSelection(true);
    }
    Q_EMIT rowCountsChanged();
}

int ThreatsTableController::numberOfRowsInTableView(const ThreatsTableView& /*tableView*/) const {
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(shownRowCount(), most));
}

std::unique_ptr<CellView> ThreatsTableController::viewForTableColumn(ThreatsTableView& tableView,
                                                                     QLatin1String identifier,
                                                                     int row) {
    std::unique_ptr<CellView> cell = tableView.makeView(CellView::reuseIdentifier);
    if (!cell) {
        cell = std::make_unique<CellView>(CellView::reuseIdentifier);
    }
    cell->setTextColor(QColor(look::cellText));
    cell->setBordered(false);
    const float grey = row % 2 == 0 ? look::evenStripe : look::oddStripe;
    cell->setBackgroundColor(QColor::fromRgbF(grey, grey, grey, look::stripeAlpha));
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
    return {look::cellText};
}

std::optional<QString> ThreatsTableController::value(int row, RowKey key) const {
    const auto at = place(row);
    return at ? m_currentRows.text(*at, key) : std::nullopt;
}

std::optional<std::size_t> ThreatsTableController::place(int row) const {
    return row < 0 ? std::nullopt : m_shownRows.place(static_cast<std::size_t>(row), m_currentRows);
}

int ThreatsTableController::shownRow(std::size_t place) const {
    const auto row = m_shownRows.shownRow(place);
    return row ? static_cast<int>(*row) : -1;
}

const TableColumn* ThreatsTableController::column(QLatin1String identifier) const {
    const auto found = std::find_if(
        m_description.columns.begin(), m_description.columns.end(),
        [identifier](const TableColumn& c) { return identifier == QLatin1String(c.identifier); });
    return found == m_description.columns.end() ? nullptr : &*found;
}

void ThreatsTableController::sortDescriptorsDidChange(ThreatsTableView& tableView) {
    if (tableView.sortDescriptors().empty()) {
        m_currentRows.unsort(); // the order was taken away
    }
    m_currentRows.sort(tableView.sortDescriptors());
    m_shownRows.refresh(m_currentRows);
    tableView.reloadData();
}

void ThreatsTableController::tableViewSelectionDidChange(const ThreatsTableView& tableView) {
    m_selections.*m_description.selection = tableView.selectedRowIndexes();
}

void ThreatsTableController::keyDown(QKeyEvent& event) {
    if (!isCopyKey(event, m_description.copyModifiers)) {
        event.ignore();
        return;
    }
    event.accept();
    copy();
}

void ThreatsTableController::copy() {
    std::optional<RowIndexes> rows = m_selections.*m_description.selection;
    if (rows) {
        rows = m_shownRows.places(*rows, m_currentRows);
        if (!rows) {
            return; // it remembers a row that is gone
        }
    }
    if (const auto text = copiedText(m_currentRows, m_description, rows)) {
        QGuiApplication::clipboard()->setText(*text);
    }
}

void ThreatsTableController::copyPaths() const {
    QStringList paths;
    const RowIndexes selected = m_tableView->selectedRowIndexes();
    for (const RowIndexes::Range& range : selected.ranges()) {
        for (int row = range.first; row <= range.last; ++row) {
            if (const auto at = place(row)) {
                const RowRef ref = m_currentRows.at(*at);
                paths.append(copiedPaths(*m_currentRows.batches()[ref.batch], ref.index));
            }
        }
    }
    paths.removeAll(QString());
    QGuiApplication::clipboard()->setText(paths.join(u'\n'));
}

} // namespace korvale
