#pragma once

#include "agent/base/PathRules.h"
#include "agent/engine/EngineFiles.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace korvale::agent {

/// What of the configuration concerns the watch.
struct WatchOptions {
    std::vector<std::string> folders; ///< absolute; what is in them is watched. None: nothing is
    PathRules excluded;
    PathRules own;            ///< the agent's folders, which are never watched
    EngineFiles engine;       ///< which are not judged: it looks at what they come from
    bool checkStarts = false; ///< programs are checked before they run
    std::int64_t maxFileSize = std::int64_t{1} << 30; ///< bytes; larger files are not judged
    std::chrono::milliseconds fileDeadline{120'000};  ///< for the engine, for each written file

    /// The folder that a path lies in; null: it is not watched, or excluded.
    [[nodiscard]] const std::string* folderOf(const std::string& path) const;
};

} // namespace korvale::agent
