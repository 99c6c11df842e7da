#pragma once

#include "agent/base/UniqueFd.h"

namespace korvale::agent {

/// Opens `name` (one part or more) beneath the open folder: no link is followed on the way, nothing
/// leads out of the folder, and, unless `otherFileSystems`, none but its own file system is
/// entered. O_CLOEXEC, O_NOFOLLOW, O_NONBLOCK and O_NOCTTY are added to `flags`. Closed, and errno
/// set, on failure.
[[nodiscard]] UniqueFd openBeneath(int folder, const char* name, int flags, bool otherFileSystems);

} // namespace korvale::agent
