#pragma once

#include "model/JsonValue.h"
#include "model/Row.h"

#include <memory>
#include <string_view>
#include <vector>

namespace korvale {

/// The rows of the process list. Each is its record, and the texts are made when a cell asks: the
/// list has no limit, and few of its rows are ever seen.
class ProcessRows final : public RowBatch {
public:
    /// A record of `document`.
    void add(const JsonValue& record);

    [[nodiscard]] std::size_t size() const override { return m_records.size(); }
    [[nodiscard]] std::optional<QString> text(std::size_t index, RowKey key) const override;
    [[nodiscard]] std::optional<RowIdentity> identity(std::size_t index) const override;
    [[nodiscard]] std::optional<std::size_t> find(const RowIdentity& identity) const override;

private:
    [[nodiscard]] std::string_view nameOf(std::uint32_t record) const;

    std::shared_ptr<const JsonDocument> m_document; ///< the one that all records are of
    std::vector<std::uint32_t> m_records;
};

} // namespace korvale
