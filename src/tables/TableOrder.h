#pragma once

#include <QStringList>

namespace korvale {

class ThreatsTableView;

/// How a person has arranged a table, in words that can be kept.
struct TableOrder {
    QStringList columns; ///< identifiers from the first on the screen; empty: as at first
    /// Identifiers, "-" before one that descends, the first decides; empty: rows as they came
    QStringList sort;

    friend bool operator==(const TableOrder&, const TableOrder&) = default;
};

[[nodiscard]] TableOrder orderOf(const ThreatsTableView& view);

/// Each of both that does not fit the table counts as empty: columns that are not all of the
/// table's, once each; a sort by what is no column, or twice by one.
void applyOrder(ThreatsTableView& view, const TableOrder& order);

} // namespace korvale
