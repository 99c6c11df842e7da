#pragma once

#include "agent_sim/Outcome.h"

#include <cstdint>
#include <optional>

namespace korvale::sim {

class Agent;

/// Publishes the lists that changed. "header.log" tells of the latest batch alone, so that a reader
/// misses a batch that the next one follows at once: the outcome waits for a short pause since the
/// last.
[[nodiscard]] Outcome publishWhenRead(Agent& agent, std::optional<std::uint32_t> mask = {});
/// The same, unless changes are being collected.
[[nodiscard]] Outcome publishChange(Agent& agent);

} // namespace korvale::sim
