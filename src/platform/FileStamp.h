#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace korvale {

/// What stands under a path, without opening it: another stamp means another file or content.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t node = 0;
    std::int64_t size = 0;
    std::int64_t changedSeconds = 0; ///< the node's change, which nobody can set back
    std::int64_t changedNanoseconds = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// No value when there is nothing at `path`. Links are not followed: one that leads nowhere is
/// something. What may not be looked at has the empty stamp.
[[nodiscard]] std::optional<FileStamp> fileStamp(const QString& path);

} // namespace korvale
