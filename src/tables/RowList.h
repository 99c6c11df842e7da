#pragma once

#include "model/Row.h"
#include "tables/SortDescriptor.h"

#include <QList>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace korvale {

/// A row: which batch, and where in it.
struct RowRef {
    std::uint32_t batch = 0;
    std::uint32_t index = 0;
};

/// The rows of a table in display order: references into the batches that hold them. A batch in its
/// own order costs nothing per row, and so does a copy, until one of both is sorted. A copy may be
/// read on another thread.
class RowList {
public:
    RowList() = default;
    /// All rows of `batch` in its order; nullptr is an empty list.
    explicit RowList(RowBatchPtr batch);

    [[nodiscard]] std::size_t size() const { return m_size; }
    /// The text under `key` in row `row`; no value when the row lacks it or does not exist.
    [[nodiscard]] std::optional<QString> text(std::size_t row, RowKey key) const;

    /// Where row `row` (< size()) is.
    [[nodiscard]] RowRef at(std::size_t row) const;
    /// Where row `index` of `batch` stands; no value when the list does not hold it.
    [[nodiscard]] std::optional<std::size_t> find(const RowBatch* batch, std::size_t index) const;
    [[nodiscard]] const std::vector<RowBatchPtr>& batches() const { return m_batches; }

    /// Puts all rows of `batch` (not null) in front.
    void prepend(RowBatchPtr batch);
    /// Drops all rows behind the first `count`, and batches that no row is left of.
    void truncate(std::size_t count);
    /// Stable; each text is asked for at most once per descriptor. No descriptors: nothing changes.
    void sort(const SortDescriptors& descriptors);
    /// Into the order in which the rows came: the newest batch first, each in its own order.
    void unsort();

private:
    void makeOrderExplicit();
    void dropUnusedBatches();

    std::vector<RowBatchPtr> m_batches;
    QList<RowRef> m_order; ///< empty while the only batch shows in its own order
    std::size_t m_size = 0;
};

} // namespace korvale
