#pragma once

#include "tables/RowList.h"
#include "tables/TableDescription.h"

#include <QList>
#include <QString>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace korvale {

/// Which rows contain all words of a text, each in one of the columns: case folded, accents as
/// written.
class RowFinder {
public:
    enum class Change {
        None,    ///< the same words
        Narrows, ///< every row that has them had the former ones, too
        Other,
    };

    Change setText(const QString& text);
    /// There are words to look for.
    [[nodiscard]] bool isOn() const { return !m_words.empty(); }

    /// Leaves of `among`, which are ascending positions in `rows`, those that match.
    void narrow(const RowList& rows, std::span<const TableColumn> columns,
                QList<std::uint32_t>& among) const;
    /// All positions that match, ascending.
    void find(const RowList& rows, std::span<const TableColumn> columns,
              QList<std::uint32_t>& found) const;

private:
    [[nodiscard]] bool matches(const std::string& folded) const;

    std::string m_text; ///< folded
    std::vector<std::string> m_words;
};

} // namespace korvale
