#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace korvale::agent {

/// Who asks, as the message bus vouches for it. Never a process number: that may be somebody else's
/// by the time it is looked at.
struct Caller {
    QString busName;
    std::uint32_t uid = 0;
    std::vector<std::uint32_t> gids; ///< all groups, the primary one too

    [[nodiscard]] bool isRoot() const { return uid == 0; }
    friend bool operator==(const Caller&, const Caller&) = default;
};

} // namespace korvale::agent
