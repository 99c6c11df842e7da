#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
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
    /// Makes the rows' texts comparable for one search, faster than text() where a batch can.
    [[nodiscard]] virtual std::unique_ptr<RowFolder> folder() const;
};

using RowBatchPtr = std::shared_ptr<const RowBatch>;

} // namespace korvale
