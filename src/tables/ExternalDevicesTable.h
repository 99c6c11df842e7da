#pragma once

#include "tables/ThreatsTableController.h"

namespace korvale {

/// External devices that were allowed or blocked: grows, newest batch on top.
class ExternalDevicesTable final : public ThreatsTableController {
    Q_OBJECT

public:
    explicit ExternalDevicesTable(RememberedSelections& selections, QObject* parent = nullptr);

    [[nodiscard]] ThreatsTableView* externalDevicesTable() const { return tableView(); }
    /// Not owned; followed by awakeFromNib.
    void setExternalDevicesTable(ThreatsTableView* view) { setTableView(view); }

private:
    void fillCell(CellView& cell, const TableColumn* column, int row) const override;
};

} // namespace korvale
