#pragma once

#include "model/Row.h"

#include <QString>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <vector>

namespace korvale {

/// A batch whose texts are all made when it is filled: for rows that outlive the file they came
/// from. They lie one behind the other in one piece of memory, as there may be a batch for every
/// row.
class TextRows final : public RowBatch {
public:
    /// `keys` are those that the rows have, in the order in which add() takes the texts. It must
    /// outlive the batch.
    explicit TextRows(std::span<const RowKey> keys) : m_keys(keys) {}

    /// One text for each key, or no value where the row lacks it.
    void add(std::initializer_list<std::optional<QString>> texts);
    /// Gives back the room for more rows.
    void shrinkToFit();

    [[nodiscard]] std::size_t size() const override { return m_places.size() / m_keys.size(); }
    [[nodiscard]] std::optional<QString> text(std::size_t index, RowKey key) const override;

private:
    struct Place {
        qsizetype begin; ///< in m_texts
        qsizetype size;  ///< -1: the row lacks this text
    };

    /// Where `text` stands, in the cell above already, perhaps: columns have few different ones.
    [[nodiscard]] Place placeOf(const std::optional<QString>& text);

    std::span<const RowKey> m_keys;
    QString m_texts;
    std::vector<Place> m_places; ///< row by row
};

} // namespace korvale
