#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <stop_token>

namespace korvale::agent {

/// Lets many through at once, or one alone. Whoever wants to be alone goes first. Any thread.
class SoloGate {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// False when it did not open until `deadline`, or `stop` was requested (noticed within a fifth
    /// of a second). Each true needs its leave…().
    [[nodiscard]] bool enter(TimePoint deadline, const std::stop_token& stop);
    void leave();
    [[nodiscard]] bool enterAlone(TimePoint deadline, const std::stop_token& stop);
    void leaveAlone();

private:
    template <typename Open>
    bool waitFor(std::unique_lock<std::mutex>& lock, TimePoint deadline,
                 const std::stop_token& stop, Open isOpen);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_inside = 0;
    std::size_t m_wantAlone = 0;
    bool m_alone = false;
};

} // namespace korvale::agent
