#include "agent/engine/EngineWatch.h"

#include "agent/base/Log.h"

#include <algorithm>

namespace korvale::agent {

EngineWatch::EngineWatch(std::vector<std::string> units, Start start)
    : m_units(std::move(units)), m_start(std::move(start)) {}

std::vector<std::string> EngineWatch::usualUnits() {
    return {"clamav-daemon.socket", "clamav-daemon.service"};
}

void EngineWatch::answered(const EngineState& state, TimePoint now) {
    tell(state);
    if (state.reachable) {
        m_pause = firstPause;
        m_lastAttempt.reset();
        return;
    }
    const bool due = !m_lastAttempt || now - *m_lastAttempt >= m_pause;
    if (!state.startable || m_units.empty() || !due) {
        return;
    }
    // A large database takes its time to load, and one that cannot be loaded takes it each time.
    m_pause = m_lastAttempt ? std::min(2 * m_pause, longestPause) : firstPause;
    m_lastAttempt = now;
    for (const std::string& unit : m_units) {
        logInfo("starting " + unit);
        m_start(unit);
    }
}

void EngineWatch::tell(const EngineState& state) {
    if (m_reachable == state.reachable) {
        return;
    }
    m_reachable = state.reachable;
    if (state.reachable) {
        logInfo("the engine answers: " + state.version);
    } else {
        logWarning(
            (state.believed ? "the engine does not answer: " : "the engine is not believed: ") +
            state.trouble);
    }
}

} // namespace korvale::agent
