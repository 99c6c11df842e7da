#pragma once

#include "tables/ThreatsTableController.h"

namespace korvale {

/// Files with a threat state: one row per threat, replaced whole.
class FileThreatsTable final : public ThreatsTableController {
    Q_OBJECT

public:
    explicit FileThreatsTable(RememberedSelections& selections, QObject* parent = nullptr);

    [[nodiscard]] ThreatsTableView* fileThreatsTable() const { return tableView(); }
    /// Not owned; followed by awakeFromNib.
    void setFileThreatsTable(ThreatsTableView* view) { setTableView(view); }

private:
    [[nodiscard]] std::optional<QString> toolTip(const TableColumn& column, int row) const override;
    [[nodiscard]] QColor textColor(const TableColumn& column, const QString& text) const override;
};

} // namespace korvale
