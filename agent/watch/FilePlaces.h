#pragma once

#include "agent/base/FileSystemFacts.h"
#include "agent/base/UniqueFd.h"
#include "agent/watch/FileEvents.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

/// A watched file system and where it is mounted. Nothing of it is kept open: it could not be
/// unmounted then.
struct WatchedRoot {
    std::string point; ///< absolute, raw bytes
    FileSystemFacts facts;
    bool isWhole = true; ///< not only a folder of it is mounted there

    /// Its folder, O_RDONLY; closed when something else is mounted there by now.
    [[nodiscard]] UniqueFd open() const;
};

/// Where what the kernel speaks of lies, as this process sees it. Any thread.
class FilePlaces {
public:
    void set(std::vector<WatchedRoot> roots);
    [[nodiscard]] std::optional<WatchedRoot> rootOf(std::uint64_t fileSystem) const;
    /// The one that a path lies on.
    [[nodiscard]] std::optional<WatchedRoot> rootAround(const std::string& path) const;
    /// That one, and those that are mounted in it.
    [[nodiscard]] std::vector<WatchedRoot> rootsIn(const std::string& folder) const;

    /// Absolute paths; nothing when it is gone, or cannot be seen from here.
    [[nodiscard]] std::optional<std::string> pathOf(const FileEvent& event) const;
    [[nodiscard]] std::optional<std::string> pathOf(int descriptor) const;

private:
    mutable std::mutex m_mutex;
    std::map<std::uint64_t, WatchedRoot> m_roots; ///< by FileSystemFacts::id
};

} // namespace korvale::agent
