#pragma once

#include "model/Row.h"
#include "tables/TableDescription.h"

#include <QString>

#include <vector>

namespace korvale {

/// So many paths of a row, or so many characters of them, are shown at most; copying takes all.
inline constexpr std::size_t mostShownPaths = 1000;
inline constexpr qsizetype longestShownPaths = qsizetype{256} * 1024;

/// Everything that is known of one row, and what its category means, line by line. The texts are
/// such as may be shown.
struct RowDetails {
    struct Line {
        QString label; ///< empty where it is that of the line before
        QString text;
        QString path; ///< the file that the line names, as the agent spells it; or empty
        friend bool operator==(const Line&, const Line&) = default;
    };

    std::vector<Line> lines;

    /// The row's first file, or an empty text.
    [[nodiscard]] QString firstPath() const;
    friend bool operator==(const RowDetails&, const RowDetails&) = default;
};

[[nodiscard]] RowDetails rowDetails(const RowBatch& batch, std::size_t index,
                                    const TableDescription& description);

} // namespace korvale
