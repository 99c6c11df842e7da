#include "tables/FollowedRow.h"

namespace korvale {

FollowedRow::FollowedRow(const RowList& rows, std::size_t row) {
    const RowRef ref = rows.at(row);
    const RowBatchPtr& batch = rows.batches()[ref.batch];
    m_batch = batch;
    m_index = ref.index;
    m_identity = batch->identity(m_index);
}

std::optional<std::size_t> FollowedRow::find(const RowList& rows) {
    if (const RowBatchPtr batch = m_batch.lock()) {
        if (const auto row = rows.find(batch.get(), m_index)) {
            return row;
        }
    }
    if (!m_identity) {
        return std::nullopt;
    }
    for (const RowBatchPtr& batch : rows.batches()) {
        if (const auto index = batch->find(*m_identity)) {
            m_batch = batch;
            m_index = *index;
            m_identity = batch->identity(*index);
            return rows.find(batch.get(), *index);
        }
    }
    return std::nullopt;
}

} // namespace korvale
