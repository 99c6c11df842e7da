#pragma once

#include "tables/ThreatsTableController.h"

namespace korvale {

/// File and process events: grows, newest batch on top.
class EventsTable final : public ThreatsTableController {
    Q_OBJECT

public:
    explicit EventsTable(RememberedSelections& selections, QObject* parent = nullptr);

    [[nodiscard]] ThreatsTableView* eventsTable() const { return tableView(); }
    /// Not owned; followed by awakeFromNib.
    void setEventsTable(ThreatsTableView* view) { setTableView(view); }
};

} // namespace korvale
