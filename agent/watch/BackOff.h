#pragma once

#include <algorithm>
#include <chrono>

namespace korvale::agent {

/// How long to wait before something that ended is started again: longer each time, unless it lived
/// long.
class BackOff {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds shortest{1000};
    static constexpr std::chrono::milliseconds longest{300'000};
    /// Whatever lived this long begins anew.
    static constexpr std::chrono::minutes longLife{10};

    /// To be asked at each end.
    [[nodiscard]] std::chrono::milliseconds next(Clock::time_point now = Clock::now()) {
        const bool anew = m_wait.count() == 0 || now - m_last > m_wait + longLife;
        m_wait = anew ? shortest : std::min(m_wait * 2, longest);
        m_last = now;
        return m_wait;
    }

private:
    std::chrono::milliseconds m_wait{0};
    Clock::time_point m_last;
};

} // namespace korvale::agent
