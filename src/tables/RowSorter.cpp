#include "tables/RowSorter.h"

#include "tables/SortKey.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace korvale {
namespace {

constexpr std::size_t prefixLength = 8;

/// A row's key: its first bytes as a number, which settles most comparisons, and where all of it
/// is.
struct Entry {
    std::uint64_t prefix;
    std::size_t offset;
    std::uint32_t length;
    std::uint32_t position; ///< where the row was; keeps the sort stable without a stable algorithm
};

class Level {
public:
    Level(std::span<const RowRef> rows, std::span<const RowBatchPtr> batches, RowKey key) {
        m_entries.reserve(rows.size());
        for (const RowRef row : rows) {
            append(batches[row.batch]->text(row.index, key));
        }
    }

    void sort(bool ascending) {
        std::sort(m_entries.begin(), m_entries.end(), [=, this](const Entry& a, const Entry& b) {
            const int order = compare(a, b);
            if (order != 0) {
                return ascending ? order < 0 : order > 0;
            }
            return a.position < b.position;
        });
    }

    [[nodiscard]] const std::vector<Entry>& entries() const { return m_entries; }

    [[nodiscard]] int compare(const Entry& a, const Entry& b) const {
        if (a.prefix != b.prefix) {
            return a.prefix < b.prefix ? -1 : 1;
        }
        const std::size_t common = std::min(a.length, b.length);
        if (common > prefixLength) {
            const int order =
                std::memcmp(m_bytes.data() + a.offset + prefixLength,
                            m_bytes.data() + b.offset + prefixLength, common - prefixLength);
            if (order != 0) {
                return order;
            }
        }
        return a.length == b.length ? 0 : (a.length < b.length ? -1 : 1);
    }

private:
    void append(const std::optional<QString>& text) {
        const std::size_t offset = m_bytes.size();
        appendSortKey(text, m_bytes);
        Entry entry{0, offset, static_cast<std::uint32_t>(m_bytes.size() - offset),
                    static_cast<std::uint32_t>(m_entries.size())};
        for (std::size_t i = 0; i < prefixLength; ++i) {
            const std::uint64_t byte =
                i < entry.length ? static_cast<unsigned char>(m_bytes[offset + i]) : 0U;
            entry.prefix = (entry.prefix << 8U) | byte;
        }
        m_entries.push_back(entry);
    }

    std::vector<Entry> m_entries;
    std::string m_bytes;
};

} // namespace

void sortRows(std::span<RowRef> rows, std::span<const RowBatchPtr> batches,
              std::span<const SortDescriptor> descriptors) {
    if (descriptors.empty() || rows.size() < 2) {
        return;
    }
    std::vector<std::span<RowRef>> ties;
    {
        Level level(rows, batches, descriptors.front().key);
        level.sort(descriptors.front().ascending);
        const std::vector<RowRef> before(rows.begin(), rows.end());
        const std::vector<Entry>& entries = level.entries();
        std::size_t runStart = 0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            rows[i] = before[entries[i].position];
            const bool runEnds =
                i + 1 == rows.size() || level.compare(entries[i], entries[i + 1]) != 0;
            if (runEnds) {
                if (i > runStart) {
                    ties.push_back(rows.subspan(runStart, i - runStart + 1));
                }
                runStart = i + 1;
            }
        }
    } // the keys of this level are gone before those of the next are made
    for (const std::span<RowRef> tie : ties) {
        sortRows(tie, batches, descriptors.subspan(1));
    }
}

} // namespace korvale
