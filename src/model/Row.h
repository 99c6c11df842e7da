#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace korvale {

/// The keys under which tables read their rows.
enum class RowKey : std::uint8_t {
    File,
    FileToolTip,
    Category,
    CategoryToolTip,
    Score,
    Found,
    FoundToolTip,
    Id,
    IdToolTip,
    ProcessName,
    ProcessToolTip,
    Pid,
    PidToolTip,
    When,
    Event,
    Details,
    DeviceType,
    ProductId,
    VendorId,
    SerialNumber,
    Action,
    EveryPath,  ///< for copying: of what a tooltip may cut short, with no path on two lines
    ExactPaths, ///< for exporting: each path as it is, a NUL between two
    Path,       ///< the row's file, whole and as the agent spells it
    Meaning,    ///< of the category: the name of a RowMeaning, the same in every language
};

/// What makes a row of a list that is read again and again the one it is.
struct RowIdentity {
    std::uint32_t state = 0;
    QByteArray name; ///< of the threat or the record
    QByteArray path; ///< its first
};

class RowFolder;

/// Rows that one parse made: immutable, shared by the tables that show them, and free to make each
/// text only when it is asked for. Texts can be asked for on several threads at once.
class RowBatch {
public:
    virtual ~RowBatch() = default;
    [[nodiscard]] virtual std::size_t size() const = 0;
    /// The text under `key` in row `index` (< size()); no value when the row lacks it.
    [[nodiscard]] virtual std::optional<QString> text(std::size_t index, RowKey key) const = 0;
    /// Shows `visit` the row's files one by one, as the agent spells them, until it says false.
    using PathVisitor = std::function<bool(const QString& path)>;
    virtual void visitPaths(std::size_t index, const PathVisitor& visit) const;
    [[nodiscard]] virtual std::size_t pathCount(std::size_t index) const;
    /// No value where rows are only ever added: no later batch holds the same row.
    [[nodiscard]] virtual std::optional<RowIdentity> identity(std::size_t /*index*/) const {
        return std::nullopt;
    }
    /// The row of that identity, or what has become of it: the same name and path in another state.
    [[nodiscard]] virtual std::optional<std::size_t> find(const RowIdentity& /*identity*/) const {
        return std::nullopt;
    }
    /// Makes the rows' texts comparable for one search, faster than text() where a batch can.
    [[nodiscard]] virtual std::unique_ptr<RowFolder> folder() const;
};

using RowBatchPtr = std::shared_ptr<const RowBatch>;

} // namespace korvale
