#pragma once

#include "agent/engine/Verdict.h"
#include "agent/scan/ScanTypes.h"
#include "agent/watch/FilePlaces.h"

#include <optional>

namespace korvale::agent {

/// Opens a file by its path, on the watched file system that it lies on, through no link. Closed
/// when there is no such regular file any more.
[[nodiscard]] WalkedFile openWatched(const FilePlaces& places, const std::string& path);
/// The same for a folder.
[[nodiscard]] UniqueFd openWatchedFolder(const WatchedRoot& root, const std::string& path);

} // namespace korvale::agent
