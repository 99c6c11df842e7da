#include "agent/engine/CircuitBreaker.h"

#include <algorithm>

namespace korvale::agent {

bool CircuitBreaker::isOpen() const {
    const std::lock_guard lock(m_mutex);
    return m_open;
}

bool CircuitBreaker::takeTry(TimePoint now) {
    const std::lock_guard lock(m_mutex);
    if (!m_open || now < m_nextTry) {
        return false;
    }
    m_nextTry = now + m_pause;
    return true;
}

void CircuitBreaker::answered() {
    const std::lock_guard lock(m_mutex);
    m_open = false;
    m_pause = firstPause;
}

void CircuitBreaker::failed(TimePoint now) {
    const std::lock_guard lock(m_mutex);
    if (m_open && now < m_nextTry) {
        return; // eight files that fail together are one failure
    }
    m_pause = m_open ? std::min(2 * m_pause, longestPause) : firstPause;
    m_open = true;
    m_nextTry = now + m_pause;
}

} // namespace korvale::agent
