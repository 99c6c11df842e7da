#pragma once

#include <cstdint>

namespace korvale {

/// Why a table has no rows. Only the first says that nothing was found.
enum class EmptyReason : std::uint8_t {
    NothingFound,
    NotRead,    ///< the agent has left no list
    Unreadable, ///< it has, but not one that can be read
    AgentAway,  ///< whatever the last list held, nobody knows how it stands now
};

} // namespace korvale
