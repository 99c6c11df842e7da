#pragma once

#include <cstdint>
#include <optional>

namespace korvale::agent {

/// What a scan has to know of a file system.
struct FileSystemFacts {
    std::uint64_t id = 0;       ///< f_fsid: the same after a restart, on most file systems
    bool pseudo = false;        ///< holds no files that anybody stored (/proc, /sys, …)
    bool keepsVerdicts = false; ///< every change of a file's content changes its ctime, and its
                                ///< inode numbers last: a verdict may be remembered
};

/// Of the file system that `descriptor` (of any kind) is on. No value when it cannot be asked.
[[nodiscard]] std::optional<FileSystemFacts> fileSystemFacts(int descriptor);

} // namespace korvale::agent
