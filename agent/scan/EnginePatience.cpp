#include "agent/scan/EnginePatience.h"

#include <algorithm>
#include <condition_variable>

namespace korvale::agent {

EnginePatience::EnginePatience(Engine& engine, std::chrono::milliseconds patience)
    : m_engine(engine), m_left(patience), m_patience(patience) {}

bool EnginePatience::wait(const std::stop_token& stop) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds pause{250};
    const std::lock_guard lock(m_mutex);
    while (!stop.stop_requested()) {
        const auto start = Clock::now();
        // Somebody else may have waited for it just now.
        if (m_engine.state().reachable || m_engine.refresh().reachable) {
            m_left = m_patience;
            return true;
        }
        if (m_left <= std::chrono::milliseconds(0)) {
            return false;
        }
        std::unique_lock sleeping(m_sleep);
        std::condition_variable_any stopped;
        stopped.wait_for(sleeping, stop, std::min(pause, m_left), [] { return false; });
        m_left -= std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - start);
    }
    return false;
}

} // namespace korvale::agent
