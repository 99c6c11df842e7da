#pragma once

#include "model/Row.h"

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace korvale {

using FakeRow = std::map<RowKey, QString>;

/// Rows out of a list or a function; counts how often a text was asked for.
class RecordingRowBatch final : public RowBatch {
public:
    using Texts = std::function<std::optional<QString>(std::size_t, RowKey)>;

    RecordingRowBatch(std::size_t size, Texts texts) : m_size(size), m_texts(std::move(texts)) {}
    explicit RecordingRowBatch(std::vector<FakeRow> rows)
        : m_size(rows.size()),
          m_texts(
              [rows = std::move(rows)](std::size_t index, RowKey key) -> std::optional<QString> {
                  const auto found = rows[index].find(key);
                  return found == rows[index].end() ? std::nullopt : std::optional(found->second);
              }) {}

    [[nodiscard]] std::size_t size() const override { return m_size; }
    [[nodiscard]] std::optional<QString> text(std::size_t index, RowKey key) const override {
        ++calls;
        return m_texts(index, key);
    }

    mutable std::size_t calls = 0;

private:
    std::size_t m_size;
    Texts m_texts;
};

/// `size` rows whose texts are `prefix` and the row's number, under every key.
inline std::shared_ptr<RecordingRowBatch> numberedRows(std::size_t size,
                                                       const QString& prefix = {}) {
    return std::make_shared<RecordingRowBatch>(size, [prefix](std::size_t index, RowKey) {
        return std::optional(prefix + QString::number(index));
    });
}

inline std::shared_ptr<RecordingRowBatch> listedRows(std::vector<FakeRow> rows) {
    return std::make_shared<RecordingRowBatch>(std::move(rows));
}

} // namespace korvale
