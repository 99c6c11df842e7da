#include "model/TextRows.h"

#include <algorithm>

namespace korvale {

TextRows::Place TextRows::placeOf(const std::optional<QString>& text) {
    if (!text) {
        return {0, -1};
    }
    if (m_places.size() >= m_keys.size()) {
        const Place above = m_places[m_places.size() - m_keys.size()];
        if (above.size == text->size() &&
            QStringView(m_texts).sliced(above.begin, above.size) == *text) {
            return above;
        }
    }
    m_texts += *text;
    return {m_texts.size() - text->size(), text->size()};
}

void TextRows::add(std::initializer_list<std::optional<QString>> texts) {
    Q_ASSERT(texts.size() == m_keys.size());
    for (const std::optional<QString>& text : texts) {
        m_places.push_back(placeOf(text));
    }
}

void TextRows::shrinkToFit() {
    m_texts.squeeze();
    m_places.shrink_to_fit();
}

std::optional<QString> TextRows::text(std::size_t index, RowKey key) const {
    const auto column = std::ranges::find(m_keys, key);
    if (column == m_keys.end()) {
        return std::nullopt;
    }
    const Place place =
        m_places[index * m_keys.size() + static_cast<std::size_t>(column - m_keys.begin())];
    return place.size < 0 ? std::nullopt : std::optional(m_texts.sliced(place.begin, place.size));
}

} // namespace korvale
