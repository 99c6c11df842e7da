#pragma once

#include "agent/app/Configuration.h"
#include "agent/watch/WatchOptions.h"

namespace korvale::agent {

/// What is watched, as the configuration wants it; without the agent's own folders.
[[nodiscard]] WatchOptions watchOptionsOf(const Configuration& configuration,
                                          const EngineFiles& engine, bool checkStarts);

} // namespace korvale::agent
