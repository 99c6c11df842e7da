#pragma once

#include <cstdint>
#include <string>

namespace korvale::agent {

/// What the signature updater left in its folder. Moments in seconds since 1970, 0: none.
struct UpdaterFolder {
    std::int64_t newest = 0;    ///< when the newest signature file was written
    std::int64_t waitUntil = 0; ///< the download service wants not to be asked before
    bool complete = false;      ///< the main and the daily signatures are there

    friend bool operator==(const UpdaterFolder&, const UpdaterFolder&) = default;
};

/// Looks at the folder. A file that is missing, strange or unreadable counts as not there. Reads
/// the disk.
[[nodiscard]] UpdaterFolder readUpdaterFolder(const std::string& folder);

} // namespace korvale::agent
