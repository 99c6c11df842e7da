#include "agent/bus/RequestLimits.h"

#include <algorithm>

namespace korvale::agent {

bool RequestLimits::take(std::uint32_t uid, Clock::time_point now) {
    if (uid == 0) {
        return true;
    }
    std::erase_if(m_fullAgain, [&](const auto& entry) { return entry.second <= now; });
    const auto known = m_fullAgain.find(uid);
    const Clock::time_point base = known == m_fullAgain.end() ? now : known->second;
    const Clock::time_point next = base + m_rate.oneMoreAfter;
    if (next - now > m_rate.atOnce * m_rate.oneMoreAfter) {
        return false;
    }
    if (known == m_fullAgain.end() && m_fullAgain.size() >= kMostUsers) {
        m_fullAgain.erase(std::min_element(
            m_fullAgain.begin(), m_fullAgain.end(),
            [](const auto& left, const auto& right) { return left.second < right.second; }));
    }
    m_fullAgain[uid] = next;
    return true;
}

} // namespace korvale::agent
