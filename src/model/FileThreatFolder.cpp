#include "model/FileThreatFolder.h"

#include "model/StateVocabulary.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korvale {

void FileThreatFolder::append(std::size_t index, RowKey key, std::string& folded) {
    const FileThreatRows::Storage& storage = m_rows.storage();
    const FileThreatRows::Row& row = storage.rows[index];
    switch (key) {
    case RowKey::File:
        if (appendName(row, folded)) {
            return;
        }
        break;
    case RowKey::Category:
        folded += category(row.state);
        return;
    case RowKey::Found: {
        std::array<char, 10> digits{}; // of 32 bits
        folded.append(digits.data(), std::to_chars(digits.begin(), digits.end(), row.count).ptr);
        return;
    }
    case RowKey::Id:
        if (row.id.kind == JsonKind::Text &&
            appendFoldedAscii({storage.bytes.get() + row.id.offset, row.id.extent}, folded)) {
            return;
        }
        break;
    default:
        break;
    }
    TextFolder::append(index, key, folded);
}

/// False for a name that takes more than cutting at the last slash.
bool FileThreatFolder::appendName(const FileThreatRows::Row& row, std::string& folded) const {
    const FileThreatRows::Path& place = m_rows.storage().paths[row.firstPath];
    const std::string_view path(m_rows.storage().bytes.get() + place.offset, place.length);
    const std::size_t slash = path.rfind('/');
    const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    return !name.empty() && appendFoldedAscii(name, folded);
}

const std::string& FileThreatFolder::category(std::uint32_t state) {
    const auto known = std::find_if(m_categories.begin(), m_categories.end(),
                                    [state](const auto& one) { return one.first == state; });
    if (known != m_categories.end()) {
        return known->second;
    }
    std::string word;
    appendFolded(stateStringFromValue(state), word);
    // A hostile list may have very many states: those beyond the first few are made anew.
    constexpr std::size_t mostRemembered = 64;
    if (m_categories.size() == mostRemembered) {
        m_categories.pop_back();
    }
    return m_categories.emplace_back(state, std::move(word)).second;
}

} // namespace korvale
