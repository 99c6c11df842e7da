#pragma once

#include "model/Row.h"

#include <QString>

#include <string>
#include <string_view>

namespace korvale {

/// Makes the texts of one batch's rows comparable: case folded, in UTF-8, accents as written. Made
/// for one search, so that it may remember what comes again. The batch outlives it.
class RowFolder {
public:
    virtual ~RowFolder() = default;
    /// Appends the folded text under `key` of row `index`; nothing when the row lacks it.
    virtual void append(std::size_t index, RowKey key, std::string& folded) = 0;
};

void appendFolded(const QString& text, std::string& folded);

/// The same straight from UTF-8 when that is ASCII only; else appends nothing and returns false.
[[nodiscard]] bool appendFoldedAscii(std::string_view bytes, std::string& folded);

/// By RowBatch::text: for batches that have nothing faster.
class TextFolder : public RowFolder {
public:
    explicit TextFolder(const RowBatch& batch) : m_batch(batch) {}
    void append(std::size_t index, RowKey key, std::string& folded) override;

private:
    const RowBatch& m_batch;
};

} // namespace korvale
