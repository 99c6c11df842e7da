#include "agent/engine/SoloGate.h"

#include <algorithm>

namespace korvale::agent {

template <typename Open>
bool SoloGate::waitFor(std::unique_lock<std::mutex>& lock, TimePoint deadline,
                       const std::stop_token& stop, Open isOpen) {
    using Clock = std::chrono::steady_clock;
    while (!isOpen()) {
        if (stop.stop_requested() || Clock::now() >= deadline) {
            return false;
        }
        m_changed.wait_until(lock,
                             std::min(deadline, Clock::now() + std::chrono::milliseconds(200)));
    }
    return true;
}

bool SoloGate::enter(TimePoint deadline, const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    if (!waitFor(lock, deadline, stop, [this] { return !m_alone && m_wantAlone == 0; })) {
        return false;
    }
    ++m_inside;
    return true;
}

void SoloGate::leave() {
    const std::lock_guard lock(m_mutex);
    if (--m_inside == 0 && m_wantAlone > 0) {
        m_changed.notify_all();
    }
}

bool SoloGate::enterAlone(TimePoint deadline, const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    ++m_wantAlone;
    const bool open = waitFor(lock, deadline, stop, [this] { return !m_alone && m_inside == 0; });
    --m_wantAlone;
    m_alone = m_alone || open;
    if (!open) {
        m_changed.notify_all();
    }
    return open;
}

void SoloGate::leaveAlone() {
    const std::lock_guard lock(m_mutex);
    m_alone = false;
    m_changed.notify_all();
}

} // namespace korvale::agent
