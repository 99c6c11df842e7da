#include "agent/watch/WaitingStarts.h"

#include <algorithm>
#include <utility>

namespace korvale::agent {

std::uint64_t WaitingStarts::tokenOf(const StartKey& key) const {
    for (const Start& start : m_starts) {
        if (start.descriptor >= 0 && start.key == key) {
            return start.token;
        }
    }
    return 0;
}

const StartKey* WaitingStarts::keyOf(std::uint64_t token) const {
    for (const Start& start : m_starts) {
        if (start.descriptor >= 0 && start.token == token) {
            return &start.key;
        }
    }
    return nullptr;
}

void WaitingStarts::add(const Start& start) {
    for (Start& place : m_starts) {
        if (place.descriptor < 0) {
            place = start;
            ++m_count;
            return;
        }
    }
}

std::int64_t WaitingStarts::nextDeadline() const {
    std::int64_t next = never;
    for (const Start& start : m_starts) {
        if (start.descriptor >= 0 && (next == never || start.deadline < next)) {
            next = start.deadline;
        }
    }
    return next;
}

template <typename Fits>
WaitingStarts::Start WaitingStarts::take(Fits fits) {
    auto* place = std::find_if(m_starts.begin(), m_starts.end(), [&](const Start& start) {
        return start.descriptor >= 0 && fits(start);
    });
    if (place == m_starts.end()) {
        return {};
    }
    --m_count;
    return std::exchange(*place, Start());
}

WaitingStarts::Start WaitingStarts::takeAnswered(std::uint64_t token) {
    return take([&](const Start& start) { return start.token == token; });
}

WaitingStarts::Start WaitingStarts::takeExpired(std::int64_t now) {
    return take([&](const Start& start) { return start.deadline <= now; });
}

WaitingStarts::Start WaitingStarts::takeAny() {
    return take([](const Start&) { return true; });
}

} // namespace korvale::agent
