#pragma once

#include "tables/ThreatsTableController.h"

namespace korvale {

/// Processes the agent alerted on, blocked or terminated: replaced whole.
class ProcessThreatsTable final : public ThreatsTableController {
    Q_OBJECT

public:
    explicit ProcessThreatsTable(RememberedSelections& selections, QObject* parent = nullptr);

    [[nodiscard]] ThreatsTableView* processThreatsTable() const { return tableView(); }
    /// Not owned; followed by awakeFromNib.
    void setProcessThreatsTable(ThreatsTableView* view) { setTableView(view); }

private:
    [[nodiscard]] std::optional<QString> toolTip(const TableColumn& column, int row) const override;
    [[nodiscard]] QColor textColor(const TableColumn& column, const QString& text) const override;
};

} // namespace korvale
