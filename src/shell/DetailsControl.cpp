#include "shell/DetailsControl.h"

#include "shell/DetailsPane.h"
#include "shell/MainWindow.h"
#include "shell/RowMenu.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"
#include "tables/RowCopy.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>

namespace korvale {

DetailsControl::DetailsControl(MainWindow& window, const TableControllers& tables,
                               FileManager& files)
    : QObject(&window), m_window(window), m_files(files) {
    follow(tables.fileThreatsTableCtrl);
    follow(tables.memExploitTableCtrl);
    follow(tables.eventsTableCtrl);
    follow(tables.externalDevicesTableCtrl);
    connect(&window, &MainWindow::paneCloseWanted, this, &DetailsControl::close);
    connect(&window, &MainWindow::tabSelected, this, [this] { m_window.setPaneShown(false); });
}

void DetailsControl::follow(ThreatsTableController& table) {
    ThreatsTableView* view = table.tableView();
    connect(view, &ThreatsTableView::rowOpened, this,
            [this, &table](bool byKey) { open(table, byKey); });
    connect(view, &ThreatsTableView::currentRowChanged, this, [this, &table] {
        if (isOpen()) {
            showCurrentRow(table);
        }
    });
    connect(view, &ThreatsTableView::contextMenuWanted, this,
            [this, &table](const QPoint& place) { showMenu(table, place); });
    connect(&table, &ThreatsTableController::rowCountsChanged, this, [this, &table] {
        if (isOpen() && &table == m_table) {
            showRow();
        }
    });
}

bool DetailsControl::isOpen() const {
    return m_pane != nullptr && m_window.isPaneShown();
}

void DetailsControl::makePane() {
    m_pane = new DetailsPane(m_files);
    m_window.setPane(*m_pane);
    connect(m_pane, &DetailsPane::closeWanted, this, &DetailsControl::close);
    connect(m_pane, &DetailsPane::copyRowWanted, this, &DetailsControl::copyRow);
    connect(m_pane, &DetailsPane::copyPathWanted, this, &DetailsControl::copyPaths);
}

void DetailsControl::open(ThreatsTableController& table, bool byKey) {
    if (!table.place(table.tableView()->currentIndex().row())) {
        return;
    }
    if (m_pane == nullptr) {
        makePane();
    }
    showCurrentRow(table);
    m_window.setPaneShown(true);
    ThreatsTableView* view = table.tableView();
    QMetaObject::invokeMethod( // once the pane has its place, which may cover the row's
        view, [view] { view->scrollTo(view->currentIndex()); }, Qt::QueuedConnection);
    if (byKey) {
        m_pane->focusText(); // where a screen reader reads on
    }
}

void DetailsControl::showCurrentRow(ThreatsTableController& table) {
    if (const auto place = table.place(table.tableView()->currentIndex().row())) {
        m_table = &table;
        m_row = FollowedRow(table.currentRows(), *place);
        showRow();
    }
}

void DetailsControl::showRow() {
    const RowList& rows = m_table->currentRows();
    if (const auto place = m_row.find(rows)) {
        const RowRef ref = rows.at(*place);
        m_pane->setDetails(
            rowDetails(*rows.batches()[ref.batch], ref.index, m_table->description()));
    } else {
        m_pane->setGone();
    }
}

void DetailsControl::close() {
    m_window.setPaneShown(false);
    ThreatsTableView* view = m_table->tableView();
    const auto place = m_row.find(m_table->currentRows());
    if (const int row = place ? m_table->shownRow(*place) : -1; row >= 0) {
        view->goToRow(row);
    }
    view->setFocus(Qt::OtherFocusReason);
}

void DetailsControl::copyRow() {
    const RowList& rows = m_table->currentRows();
    if (const auto place = m_row.find(rows)) {
        const RowRef ref = rows.at(*place);
        QGuiApplication::clipboard()->setText(
            copiedRow(*rows.batches()[ref.batch], ref.index, m_table->description()));
    }
}

void DetailsControl::showMenu(ThreatsTableController& table, const QPoint& globalPosition) {
    m_menuTable = &table;
    const ThreatsTableView& view = *table.tableView();
    const auto place = table.place(view.currentIndex().row());
    const bool hasRow = place && !view.selectedRowIndexes().isEmpty();
    RowActions& actions = menuActions();
    actions.setTarget(hasRow,
                      hasRow ? table.currentRows().text(*place, RowKey::Path).value_or(QString())
                             : QString());
    actions.action(RowAction::SelectAll).setEnabled(table.shownRowCount() > 0);
    showRowMenu(actions, *table.tableView(), globalPosition);
}

RowActions& DetailsControl::menuActions() {
    if (m_menuActions == nullptr) {
        m_menuActions = new RowActions(m_files, this);
        connect(m_menuActions, &RowActions::copyWanted, this, [this] { m_menuTable->copy(); });
        connect(m_menuActions, &RowActions::copyPathWanted, this,
                [this] { m_menuTable->copyPaths(); });
        connect(m_menuActions, &RowActions::selectAllWanted, this,
                [this] { m_menuTable->tableView()->selectAll(); });
        connect(m_menuActions, &RowActions::notShown, this, [this] {
            open(*m_menuTable, false); // the pane has room to say so
            if (isOpen()) {
                m_pane->sayNotShown();
            }
        });
    }
    return *m_menuActions;
}

void DetailsControl::copyPaths() {
    const RowList& rows = m_table->currentRows();
    if (const auto place = m_row.find(rows)) {
        const RowRef ref = rows.at(*place);
        QGuiApplication::clipboard()->setText(copiedPaths(*rows.batches()[ref.batch], ref.index));
    }
}

} // namespace korvale
