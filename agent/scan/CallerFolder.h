#pragma once

#include "agent/base/UniqueFd.h"
#include "agent/scan/CallerCredentials.h"

#include <string>

namespace korvale::agent {

/// A folder that a caller may read, opened with the caller's own rights.
struct CallerFolder {
    UniqueFd descriptor; ///< closed: it was refused, see `error`
    std::string path;    ///< absolute, without links: where it is
    std::string error;   ///< a sentence for people; empty when open
};

/// Opens an absolute path, links in it included, in a thread that has the caller's rights and ends.
/// Waits for that thread, hence for the disk or the network: never on the main thread.
[[nodiscard]] CallerFolder openCallerFolder(const std::string& path,
                                            const CallerCredentials& caller);

} // namespace korvale::agent
