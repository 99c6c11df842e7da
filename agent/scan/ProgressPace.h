#pragma once

#include <atomic>
#include <chrono>

namespace korvale::agent {

/// At most five times a second, and the first time at once. Any thread.
class ProgressPace {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds step{200};

    /// True for one of those who ask in each step.
    [[nodiscard]] bool isDue(TimePoint now) {
        auto next = m_next.load(std::memory_order_relaxed);
        return now >= next && m_next.compare_exchange_strong(next, now + step);
    }

private:
    std::atomic<TimePoint> m_next{TimePoint::min()};
};

} // namespace korvale::agent
