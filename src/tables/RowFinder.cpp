#include "tables/RowFinder.h"

#include "model/RowFolder.h"

#include <QStringList>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace korvale {
namespace {

/// Between two columns: no word has it, as words are parted by it.
constexpr char columnEnd = '\n';

/// Makes the folded texts of one row after the other.
class RowTexts {
public:
    RowTexts(const RowList& rows, std::span<const TableColumn> columns)
        : m_rows(rows), m_columns(columns) {
        for (const RowBatchPtr& batch : rows.batches()) {
            m_folders.push_back(batch->folder());
        }
    }

    const std::string& of(std::uint32_t row) {
        const RowRef place = m_rows.at(row);
        m_folded.clear();
        for (const TableColumn& column : m_columns) {
            m_folders[place.batch]->append(place.index, column.text, m_folded);
            m_folded += columnEnd;
        }
        return m_folded;
    }

private:
    const RowList& m_rows;
    std::span<const TableColumn> m_columns;
    std::vector<std::unique_ptr<RowFolder>> m_folders;
    std::string m_folded;
};

} // namespace

RowFinder::Change RowFinder::setText(const QString& text) {
    const std::string before = std::exchange(m_text, {});
    const std::vector<std::string> wordsBefore = std::exchange(m_words, {});
    const QString simple = text.simplified();
    appendFolded(simple, m_text);
    for (const QString& word : simple.split(u' ', Qt::SkipEmptyParts)) {
        appendFolded(word, m_words.emplace_back());
    }
    if (m_words == wordsBefore) {
        return Change::None;
    }
    return !before.empty() && m_text.starts_with(before) ? Change::Narrows : Change::Other;
}

bool RowFinder::matches(const std::string& folded) const {
    return std::all_of(m_words.begin(), m_words.end(), [&folded](const std::string& word) {
        return ::memmem(folded.data(), folded.size(), word.data(), word.size()) != nullptr;
    });
}

void RowFinder::narrow(const RowList& rows, std::span<const TableColumn> columns,
                       QList<std::uint32_t>& among) const {
    RowTexts texts(rows, columns);
    among.removeIf([&](std::uint32_t row) { return !matches(texts.of(row)); });
}

void RowFinder::find(const RowList& rows, std::span<const TableColumn> columns,
                     QList<std::uint32_t>& found) const {
    found.clear();
    RowTexts texts(rows, columns);
    for (std::uint32_t row = 0; row < rows.size(); ++row) {
        if (matches(texts.of(row))) {
            found.push_back(row);
        }
    }
}

} // namespace korvale
