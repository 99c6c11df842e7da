#include "tables/RowList.h"

#include "tables/RowSorter.h"

#include <algorithm>
#include <utility>

namespace korvale {

RowList::RowList(RowBatchPtr batch) : m_size(batch ? batch->size() : 0) {
    if (m_size > 0) {
        m_batches.push_back(std::move(batch));
    }
}

RowRef RowList::at(std::size_t row) const {
    return m_order.empty() ? RowRef{0, static_cast<std::uint32_t>(row)}
                           : m_order[static_cast<qsizetype>(row)];
}

std::optional<std::size_t> RowList::find(const RowBatch* batch, std::size_t index) const {
    const auto held = std::ranges::find(m_batches, batch, &RowBatchPtr::get);
    if (held == m_batches.end()) {
        return std::nullopt;
    }
    if (m_order.empty()) {
        return index < m_size ? std::optional(index) : std::nullopt;
    }
    const auto number = static_cast<std::uint32_t>(held - m_batches.begin());
    const auto row = std::ranges::find_if(
        m_order, [&](RowRef ref) { return ref.batch == number && ref.index == index; });
    return row == m_order.end() ? std::nullopt
                                : std::optional(static_cast<std::size_t>(row - m_order.begin()));
}

std::optional<QString> RowList::text(std::size_t row, RowKey key) const {
    if (row >= m_size) {
        return std::nullopt;
    }
    const RowRef ref = at(row);
    return m_batches[ref.batch]->text(ref.index, key);
}

void RowList::makeOrderExplicit() {
    if (!m_order.empty()) {
        return;
    }
    m_order.resize(static_cast<qsizetype>(m_size));
    std::uint32_t index = 0;
    for (RowRef& row : m_order) {
        row.index = index++;
    }
}

void RowList::prepend(RowBatchPtr batch) {
    if (m_size == 0) {
        *this = RowList(std::move(batch));
        return;
    }
    makeOrderExplicit();
    const auto added = static_cast<qsizetype>(batch->size());
    const auto number = static_cast<std::uint32_t>(m_batches.size());
    QList<RowRef> order; // anew: a list that grows in front keeps room for thrice as many
    order.reserve(added + m_order.size());
    for (qsizetype row = 0; row < added; ++row) {
        order.append({number, static_cast<std::uint32_t>(row)});
    }
    order += m_order;
    m_order = std::move(order);
    m_batches.push_back(std::move(batch));
    m_size = static_cast<std::size_t>(m_order.size());
}

void RowList::truncate(std::size_t count) {
    if (count >= m_size) {
        return;
    }
    if (!m_order.empty()) {
        m_order.resize(static_cast<qsizetype>(count));
    }
    m_size = count;
    dropUnusedBatches();
}

void RowList::dropUnusedBatches() {
    if (m_size == 0) {
        *this = RowList();
        return;
    }
    if (m_order.empty()) {
        return; // a single batch, and rows of it are left
    }
    std::vector<bool> isUsed(m_batches.size(), false);
    for (const RowRef ref : std::as_const(m_order)) {
        isUsed[ref.batch] = true;
    }
    // In the order in which they came, which unsort() knows by their numbers.
    std::vector<std::uint32_t> renamed(m_batches.size(), 0);
    std::vector<RowBatchPtr> kept;
    for (std::size_t batch = 0; batch < m_batches.size(); ++batch) {
        renamed[batch] = static_cast<std::uint32_t>(kept.size());
        if (isUsed[batch]) {
            kept.push_back(std::move(m_batches[batch]));
        }
    }
    for (RowRef& ref : m_order) {
        ref.batch = renamed[ref.batch];
    }
    m_batches = std::move(kept);
}

void RowList::unsort() {
    std::sort(m_order.begin(), m_order.end(), [](RowRef a, RowRef b) {
        return a.batch != b.batch ? a.batch > b.batch : a.index < b.index;
    });
}

void RowList::sort(const SortDescriptors& descriptors) {
    if (descriptors.empty() || m_size < 2) {
        return;
    }
    makeOrderExplicit();
    sortRows({m_order.data(), m_size}, m_batches, descriptors);
}

} // namespace korvale
