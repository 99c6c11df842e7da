#pragma once

#include "agent/engine/Engine.h"

#include <chrono>
#include <mutex>
#include <stop_token>

namespace korvale::agent {

/// Lets a scan wait for an engine that went away, as it is started again as a rule; but not for
/// ever, and not each file anew. Any thread; all who ask wait together.
class EnginePatience {
public:
    EnginePatience(Engine& engine, std::chrono::milliseconds patience);

    /// True: the engine is there, ask it (again). False: go on without it.
    [[nodiscard]] bool wait(const std::stop_token& stop);

private:
    Engine& m_engine;
    std::mutex m_mutex;
    std::mutex m_sleep; // guards nothing: a stop wakes only who waits with a lock
    std::chrono::milliseconds m_left;
    const std::chrono::milliseconds m_patience;
};

} // namespace korvale::agent
