#pragma once

#include <chrono>
#include <mutex>

namespace korvale::agent {

/// Keeps callers from waiting for an engine that does not answer. Closed: ask. Open: do not, but
/// now and then one caller may try whether it is back. Any thread.
class CircuitBreaker {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds firstPause{1000};
    static constexpr std::chrono::milliseconds longestPause{30000}; ///< between two tries

    [[nodiscard]] bool isOpen() const;
    /// True for one caller, when the breaker is open and a try is due: that one asks the engine how
    /// it is, and calls answered() or failed().
    [[nodiscard]] bool takeTry(TimePoint now);
    void answered(); ///< closes it
    void failed(TimePoint now);

private:
    mutable std::mutex m_mutex;
    bool m_open = false;
    std::chrono::milliseconds m_pause = firstPause;
    TimePoint m_nextTry;
};

} // namespace korvale::agent
