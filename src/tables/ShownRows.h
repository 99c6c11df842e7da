#pragma once

#include "tables/RowFinder.h"
#include "tables/RowIndexes.h"

#include <optional>

namespace korvale {

/// Which rows of a table are shown: all of them, or those that contain what is looked for. Holds
/// positions only, four bytes for each row that is found. Main thread.
class ShownRows {
public:
    explicit ShownRows(std::span<const TableColumn> columns) : m_columns(columns) {}

    /// False when that changes nothing.
    bool setText(const QString& text, const RowList& rows);
    /// The rows are others, or in another order, than before; until refresh() positions are of old.
    void outdate() { m_isOutdated = true; }
    void refresh(const RowList& rows);

    /// Rows are left out, or would be.
    [[nodiscard]] bool isFiltered() const { return m_finder.isOn(); }
    [[nodiscard]] std::size_t count(const RowList& rows) const {
        return isFiltered() ? static_cast<std::size_t>(m_found.size()) : rows.size();
    }
    /// While rows are left out, where the shown ones stand in the list; shared, not copied.
    [[nodiscard]] std::optional<QList<std::uint32_t>> found() const {
        return isFiltered() ? std::optional(m_found) : std::nullopt;
    }
    /// Where in the list the shown row stands; no value beyond the last.
    [[nodiscard]] std::optional<std::size_t> place(std::size_t shownRow, const RowList& rows) const;
    /// The same for many; no value when one lies beyond the last.
    [[nodiscard]] std::optional<RowIndexes> places(const RowIndexes& shownRows,
                                                   const RowList& rows) const;
    /// The other way round; no value for a row that is left out.
    [[nodiscard]] std::optional<std::size_t> shownRow(std::size_t place) const;

private:
    std::span<const TableColumn> m_columns;
    RowFinder m_finder;
    QList<std::uint32_t> m_found;
    bool m_isOutdated = false;
};

} // namespace korvale
