#pragma once

#include "model/Row.h"

#include <cstddef>

namespace korvale {

/// Rows that a table keeps where new ones are put in front, and that one list is read for.
inline constexpr std::size_t mostTableRows = 1000;

/// A table as the parsers see it. Loading and adding never redraw: updateView does.
class TableFeed {
public:
    virtual ~TableFeed() = default;
    /// Replaces all rows; nullptr (an absent list) empties the table. Never capped.
    virtual void loadData(RowBatchPtr rows) = 0;
    /// Puts rows in front of the present ones and caps the list at mostTableRows. nullptr or no
    /// rows: nothing.
    virtual void addData(RowBatchPtr rows) = 0;
    virtual void updateView() = 0;
};

/// The four tables of the details window.
struct TableFeeds {
    TableFeed& fileThreatsTableCtrl;
    TableFeed& memExploitTableCtrl;
    TableFeed& eventsTableCtrl;
    TableFeed& externalDevicesTableCtrl;
};

} // namespace korvale
