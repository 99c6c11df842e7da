#pragma once

#include "model/TableFeeds.h"
#include "tables/EmptyReason.h"
#include "tables/RememberedSelections.h"
#include "tables/RowList.h"
#include "tables/RowSnapshot.h"
#include "tables/ShownRows.h"
#include "tables/TableDataSource.h"
#include "tables/TableDescription.h"
#include "tables/ThreatsTableView.h"

#include <QObject>
#include <QPointer>

namespace korvale {

/// Owns the rows of one table and drives its view. It lives from launch on; the view comes when the
/// details window is first built and shows the rows that came before. Main thread.
class ThreatsTableController : public QObject, public TableFeed, public TableDataSource {
    Q_OBJECT

public:
    ~ThreatsTableController() override;

    /// Gives the attached view its columns, titles and spacing, puts the controller behind it in
    /// the key-event chain, and shows the rows.
    void awakeFromNib();

    // Rows. None of these redraws; without a view nothing is sorted.
    void loadData(RowBatchPtr rows) override;
    void addData(RowBatchPtr rows) override;
    /// Replaces the rows, in the view's present order. Never capped. nullptr empties the list.
    void loadData(const ThreatsTableView* tableView, RowBatchPtr rows);
    /// Puts rows on top, unsorted, and caps the list. nullptr or no rows: nothing, not even the
    /// cap.
    void addData(const ThreatsTableView* tableView, RowBatchPtr rows);
    void removeAll();
    /// Drops what lies behind the first mostTableRows rows.
    void removeExtraData();
    /// Reloads the view, if there is one yet, and lets it select several rows.
    void updateView() override;

    /// What the table says while it has no rows; NotRead at first.
    void setEmptyReason(EmptyReason reason);

    /// Shows only the rows whose shown texts contain all words of `text`, until it is empty. To
    /// sorting, selecting and copying the others are not there. The selection goes with each change
    /// of the words, as its positions would mean other rows; unseen counts know nothing of it.
    void setFind(const QString& text);
    /// Rows are left out, or would be.
    [[nodiscard]] bool isFiltered() const { return m_shownRows.isFiltered(); }
    [[nodiscard]] std::size_t shownRowCount() const { return m_shownRows.count(m_currentRows); }

    /// The rows as they are now, to be written somewhere: all that are shown, or those of them that
    /// are selected.
    [[nodiscard]] RowSnapshot snapshot(bool selectedOnly) const;
    /// What the copy key does: the remembered selection goes to the clipboard.
    void copy();
    /// The paths of the selected rows, one a line.
    void copyPaths() const;
    /// The row that the shown row `row` is; no value beyond the last.
    [[nodiscard]] std::optional<std::size_t> place(int row) const;
    /// Where that row of currentRows() is shown; -1 when it is left out.
    [[nodiscard]] int shownRow(std::size_t place) const;
    /// nullptr until the window is built.
    [[nodiscard]] ThreatsTableView* tableView() const { return m_tableView; }

    [[nodiscard]] const RowList& currentRows() const { return m_currentRows; }
    /// Not used by any operation; part of the class's interface. Not owned.
    [[nodiscard]] const RowList* rowsObjects() const { return m_rowsObjects; }
    void setRowsObjects(const RowList* rows) { m_rowsObjects = rows; }

    [[nodiscard]] const TableDescription& description() const { return m_description; }

    // TableDataSource.
    [[nodiscard]] int numberOfRowsInTableView(const ThreatsTableView& tableView) const override;
    [[nodiscard]] std::unique_ptr<CellView>
    viewForTableColumn(ThreatsTableView& tableView, QLatin1String identifier, int row) override;
    [[nodiscard]] std::optional<QString> cellText(QLatin1String identifier, int row) const override;
    [[nodiscard]] std::optional<QString> cellToolTip(QLatin1String identifier,
                                                     int row) const override;
    void sortDescriptorsDidChange(ThreatsTableView& tableView) override;
    void tableViewSelectionDidChange(const ThreatsTableView& tableView) override;
    /// The copy key; any other key is left ignored.
    void keyDown(QKeyEvent& event) override;

Q_SIGNALS:
    /// The number of rows, or of those shown, may be another.
    void rowCountsChanged();

protected:
    ThreatsTableController(const TableDescription& description, RememberedSelections& selections,
                           QObject* parent);

    void setTableView(ThreatsTableView* view) { m_tableView = view; }

    /// Text, tooltip, colour and line-break mode of a cell; the text is black already.
    virtual void fillCell(CellView& cell, const TableColumn* column, int row) const;
    [[nodiscard]] virtual std::optional<QString> toolTip(const TableColumn& column, int row) const;
    [[nodiscard]] virtual QColor textColor(const TableColumn& column, const QString& text) const;

    [[nodiscard]] std::optional<QString> value(int row, RowKey key) const;

private:
    [[nodiscard]] const TableColumn* column(QLatin1String identifier) const;
    [[nodiscard]] QString emptyText() const;

    const TableDescription& m_description;
    RememberedSelections& m_selections;
    RowList m_currentRows;
    ShownRows m_shownRows;
    const RowList* m_rowsObjects = nullptr;
    QPointer<ThreatsTableView> m_tableView;
    EmptyReason m_emptyReason = EmptyReason::NotRead;
};

} // namespace korvale
