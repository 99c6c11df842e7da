#pragma once

#include <cstdint>
#include <string>

namespace korvale::agent {

/// How well the kernel tells of a file system.
enum class WatchMode {
    None,       ///< not at all
    Unasked,    ///< not at all, and that is as it should be: some server or program is behind it
    ClosedOnly, ///< of written files, not of those that are moved in
    Full,       ///< of written and of moved ones
};

/// A watched file system, for people.
struct WatchedSystem {
    std::uint64_t id = 0; ///< FileSystemFacts::id
    std::string point;    ///< where it is mounted, raw bytes
    WatchMode mode = WatchMode::None;
    bool starts = false; ///< programs on it are checked before they run
    std::string problem; ///< a sentence; empty: none

    friend bool operator==(const WatchedSystem&, const WatchedSystem&) = default;
};

} // namespace korvale::agent
