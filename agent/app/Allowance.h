#pragma once

#include <chrono>

namespace korvale::agent {

/// A number of things at once, and one more after each period.
class Allowance {
public:
    using Clock = std::chrono::steady_clock;

    Allowance(int atOnce, std::chrono::milliseconds oneMoreAfter)
        : m_whole(atOnce * oneMoreAfter), m_oneMoreAfter(oneMoreAfter) {}

    /// True, and one used up, when there is one left.
    bool take(Clock::time_point now = Clock::now()) {
        const Clock::time_point next = (m_fullAgain > now ? m_fullAgain : now) + m_oneMoreAfter;
        if (next - now > m_whole) {
            return false;
        }
        m_fullAgain = next;
        return true;
    }

private:
    std::chrono::milliseconds m_whole;
    std::chrono::milliseconds m_oneMoreAfter;
    Clock::time_point m_fullAgain; ///< when all would be back
};

} // namespace korvale::agent
