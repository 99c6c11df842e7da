#pragma once

#include "model/FileThreatRows.h"
#include "model/RowFolder.h"

#include <utility>
#include <vector>

namespace korvale {

/// The file threats' way: names and identifiers from the file's bytes, each category word once.
class FileThreatFolder final : public TextFolder {
public:
    explicit FileThreatFolder(const FileThreatRows& rows) : TextFolder(rows), m_rows(rows) {}
    void append(std::size_t index, RowKey key, std::string& folded) override;

private:
    [[nodiscard]] bool appendName(const FileThreatRows::Row& row, std::string& folded) const;
    [[nodiscard]] const std::string& category(std::uint32_t state);

    const FileThreatRows& m_rows;
    std::vector<std::pair<std::uint32_t, std::string>> m_categories;
};

} // namespace korvale
