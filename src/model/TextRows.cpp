#include "model/TextRows.h"

#include <algorithm>

namespace korvale {

void TextRows::add(std::initializer_list<std::optional<QString>> texts) {
    Q_ASSERT(texts.size() == m_keys.size());
    m_texts.insert(m_texts.end(), texts);
}

std::optional<QString> TextRows::text(std::size_t index, RowKey key) const {
    const auto column = std::ranges::find(m_keys, key);
    if (column == m_keys.end()) {
        return std::nullopt;
    }
    return m_texts[index * m_keys.size() + static_cast<std::size_t>(column - m_keys.begin())];
}

} // namespace korvale
