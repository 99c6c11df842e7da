#pragma once

#include "agent/engine/EngineState.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

/// Notices that clamd is gone (any local user can end it through its socket) and has it started
/// again, and started for the first time once it has signatures: the system does neither. One
/// thread.
class EngineWatch {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    /// Asks the service manager to start a unit; does not wait.
    using Start = std::function<void(const std::string& unit)>;

    static constexpr std::chrono::seconds firstPause{30};
    static constexpr std::chrono::seconds longestPause{1800}; ///< between two attempts

    /// `units` are started in that order; none: nothing is started.
    EngineWatch(std::vector<std::string> units, Start start);

    /// The socket first: with it the first question starts the service anyhow.
    static std::vector<std::string> usualUnits();

    /// To be told each state that a refresh brought.
    void answered(const EngineState& state, TimePoint now);

private:
    void tell(const EngineState& state);

    const std::vector<std::string> m_units;
    const Start m_start;
    std::optional<bool> m_reachable;
    std::chrono::seconds m_pause = firstPause;
    std::optional<TimePoint> m_lastAttempt;
};

} // namespace korvale::agent
