#pragma once

#include <cstdint>

namespace korvale {

/// User id of the session's login name (getlogin, then the user database); 0 when there is no login
/// name, no such user, or the size of an entry is unknown.
[[nodiscard]] std::uint32_t getCurrentLoginUID();

/// User id of the user `name` (not null); 0 as above.
[[nodiscard]] std::uint32_t userId(const char* name);

} // namespace korvale
