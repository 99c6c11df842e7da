#pragma once

#include "model/Row.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace korvale {

/// A batch whose texts are all made when it is filled: for rows that outlive the file they came
/// from.
class TextRows final : public RowBatch {
public:
    /// `keys` are those that the rows have, in the order in which add() takes the texts. It must
    /// outlive the batch.
    explicit TextRows(std::span<const RowKey> keys) : m_keys(keys) {}

    /// One text for each key, or no value where the row lacks it.
    void add(std::initializer_list<std::optional<QString>> texts);

    [[nodiscard]] std::size_t size() const override { return m_texts.size() / m_keys.size(); }
    [[nodiscard]] std::optional<QString> text(std::size_t index, RowKey key) const override;

private:
    std::span<const RowKey> m_keys;
    std::vector<std::optional<QString>> m_texts; ///< row by row
};

} // namespace korvale
