#pragma once

#include <string>

namespace korvale::agent {

/// Why clamd can hardly unpack anything in its temporary folder, for people; empty: it has room.
/// Each level of an archive takes an inode and some space, and what clamd cannot unpack it calls
/// clean. A call to the disk.
[[nodiscard]] std::string temporaryFolderTrouble(const std::string& folder);

} // namespace korvale::agent
