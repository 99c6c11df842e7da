#pragma once

#include "tables/CellView.h"

#include <QLatin1String>
#include <QString>

#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace korvale {

class ThreatsTableView;

/// What a table view asks of, and tells, its controller. Main thread.
class TableDataSource {
public:
    virtual ~TableDataSource() = default;

    [[nodiscard]] virtual int numberOfRowsInTableView(const ThreatsTableView& tableView) const = 0;
    /// The cell of a row, made or taken from the view's pool; the view owns it from then on.
    [[nodiscard]] virtual std::unique_ptr<CellView>
    viewForTableColumn(ThreatsTableView& tableView, QLatin1String identifier, int row) = 0;
    /// What the cell would show, for readers of cells that are out of sight.
    [[nodiscard]] virtual std::optional<QString> cellText(QLatin1String identifier,
                                                          int row) const = 0;
    [[nodiscard]] virtual std::optional<QString> cellToolTip(QLatin1String identifier,
                                                             int row) const = 0;
    virtual void sortDescriptorsDidChange(ThreatsTableView& tableView) = 0;
    virtual void tableViewSelectionDidChange(const ThreatsTableView& tableView) = 0;
    /// Keys that the view has no use for. An event left ignored goes on to the view's parent.
    virtual void keyDown(QKeyEvent& event) = 0;
};

} // namespace korvale
