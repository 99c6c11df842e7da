#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvale::agent {

/// One line of /proc/self/mountinfo.
struct Mount {
    std::string device; ///< "8:1": the same for all mounts of a file system
    std::string root;   ///< which folder of the file system is mounted; "/" as a rule
    std::string point;  ///< where, raw bytes
    std::string type;   ///< "ext4"

    friend bool operator==(const Mount&, const Mount&) = default;
};

/// Lines that are none are left out.
[[nodiscard]] std::vector<Mount> parseMounts(std::string_view text);

/// The mounts, one a file system, on which these folders and everything mounted in them lie,
/// without those that hold no files. A mount of a whole file system comes before one of a part of
/// it.
[[nodiscard]] std::vector<Mount> mountsOf(const std::vector<Mount>& mounts,
                                          const std::vector<std::string>& folders);

/// Whether nobody but the kernel and a disk can make those wait who read its files: not so for
/// network file systems and those that some program serves.
[[nodiscard]] bool isLocalType(std::string_view type);

} // namespace korvale::agent
