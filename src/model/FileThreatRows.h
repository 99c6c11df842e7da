#pragma once

#include "model/JsonDocument.h"
#include "model/Row.h"

#include <cstdint>
#include <vector>

namespace korvale {

/// Rows of the file threats table, one for each group of files with the same state and identifier.
/// They point into the bytes of the file they were read from: a text is made when it is asked for.
class FileThreatRows final : public RowBatch {
public:
    static constexpr std::uint32_t none = ~std::uint32_t{0};

    /// A path in the file's bytes.
    struct Path {
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t next; ///< the row's next path in the order met, or none
    };
    /// A value in the file's bytes; of a list or object `offset` is its text's place in `texts`.
    struct Row {
        JsonNode id;
        JsonNode score;
        std::uint32_t state; ///< without the bit that grouping ignores
        std::uint32_t firstPath;
        std::uint32_t lastPath;
        std::uint32_t count; ///< of paths
    };
    struct Storage {
        JsonBytes bytes;
        std::vector<Path> paths;
        std::vector<Row> rows;
        std::vector<QString> texts; ///< compact JSON
    };

    explicit FileThreatRows(Storage storage);

    [[nodiscard]] std::size_t size() const override { return m_storage.rows.size(); }
    [[nodiscard]] std::optional<QString> text(std::size_t index, RowKey key) const override;
    void visitPaths(std::size_t index, const PathVisitor& visit) const override;
    [[nodiscard]] std::size_t pathCount(std::size_t index) const override;
    [[nodiscard]] std::optional<RowIdentity> identity(std::size_t index) const override;
    [[nodiscard]] std::optional<std::size_t> find(const RowIdentity& identity) const override;
    [[nodiscard]] std::unique_ptr<RowFolder> folder() const override;
    [[nodiscard]] const Storage& storage() const { return m_storage; }

private:
    [[nodiscard]] QString pathText(std::uint32_t path) const;
    using Spelling = QString (*)(const QString& path);
    /// The row's paths; none is begun behind the first `enough` characters.
    [[nodiscard]] QString joinedPaths(std::size_t index, QLatin1String separator, Spelling spelling,
                                      qsizetype enough) const;
    [[nodiscard]] std::optional<QString> valueOf(JsonNode node) const;
    // Of the value, not copied where it stands in the file.
    [[nodiscard]] QByteArray bytesOf(JsonNode node) const;
    [[nodiscard]] QByteArrayView pathBytes(std::uint32_t path) const;

    Storage m_storage;
};

} // namespace korvale
