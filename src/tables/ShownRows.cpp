#include "tables/ShownRows.h"

#include <algorithm>

namespace korvale {

bool ShownRows::setText(const QString& text, const RowList& rows) {
    const RowFinder::Change change = m_finder.setText(text);
    if (change == RowFinder::Change::None) {
        return false;
    }
    if (change == RowFinder::Change::Narrows && !m_isOutdated) {
        m_finder.narrow(rows, m_columns, m_found);
    } else {
        refresh(rows);
    }
    return true;
}

void ShownRows::refresh(const RowList& rows) {
    m_isOutdated = false;
    if (m_finder.isOn()) {
        m_finder.find(rows, m_columns, m_found);
    } else {
        m_found = {};
    }
}

std::optional<std::size_t> ShownRows::place(std::size_t shownRow, const RowList& rows) const {
    if (shownRow >= count(rows)) {
        return std::nullopt;
    }
    return isFiltered() ? m_found[static_cast<qsizetype>(shownRow)] : shownRow;
}

std::optional<RowIndexes> ShownRows::places(const RowIndexes& shownRows,
                                            const RowList& rows) const {
    if (shownRows.last() >= 0 && static_cast<std::size_t>(shownRows.last()) >= count(rows)) {
        return std::nullopt;
    }
    if (!isFiltered()) {
        return shownRows;
    }
    std::vector<RowIndexes::Range> ranges;
    for (const RowIndexes::Range& range : shownRows.ranges()) {
        for (int row = range.first; row <= range.last; ++row) {
            const int place = static_cast<int>(m_found[row]);
            ranges.push_back({place, place});
        }
    }
    return RowIndexes(std::move(ranges));
}

std::optional<std::size_t> ShownRows::shownRow(std::size_t place) const {
    if (!isFiltered()) {
        return place;
    }
    const auto found = std::ranges::lower_bound(m_found, place);
    return found != m_found.end() && *found == place
               ? std::optional(static_cast<std::size_t>(found - m_found.begin()))
               : std::nullopt;
}

} // namespace korvale
