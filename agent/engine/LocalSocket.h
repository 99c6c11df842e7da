#pragma once

#include "agent/base/UniqueFd.h"

#include <chrono>
#include <string>

namespace korvale::agent {

/// A non-blocking, connected stream to the local socket `path`. While the listener's queue is full
/// it is tried again until `deadline`. Closed, and a sentence in `error`, on failure.
[[nodiscard]] UniqueFd connectLocal(const std::string& path,
                                    std::chrono::steady_clock::time_point deadline,
                                    std::string& error);

/// Milliseconds until `deadline` for poll(), rounded up, at most `most`.
[[nodiscard]] int pollTime(std::chrono::steady_clock::time_point deadline,
                           std::chrono::milliseconds most);

} // namespace korvale::agent
