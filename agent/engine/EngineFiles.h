#pragma once

#include "agent/engine/ClamdConfiguration.h"

#include <optional>
#include <sys/types.h>

namespace korvale::agent {

/// The files that the engine makes while it works: parts of what it unpacks, bad ones among them.
struct EngineFiles {
    std::string folder;         ///< in which it makes them
    std::optional<uid_t> owner; ///< none: they cannot be told from what root writes

    [[nodiscard]] bool contain(const std::string& path, uid_t owner) const;
};

/// Asks the system for the number of the engine's user. Reads the disk.
[[nodiscard]] EngineFiles engineFilesOf(const ClamdConfiguration& configuration);

} // namespace korvale::agent
