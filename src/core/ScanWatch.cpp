#include "core/ScanWatch.h"

#include <algorithm>

namespace korvale {

void ScanWatch::accepted(Moment now) {
    m_accepted = now;
    m_lastLife = now;
}

void ScanWatch::saw(ScannerState state, Moment now) {
    if (m_state != state) {
        m_state = state;
        m_stateSince = now;
    }
    m_wasBusy = m_wasBusy || state == ScannerState::Busy;
}

void ScanWatch::progressed(Moment now) {
    m_lastProgress = now;
    m_lastLife = now;
}

ScanWatch::End ScanWatch::end(Moment now) const {
    if (!m_accepted) {
        return End::None;
    }
    const Moment idleSince = std::max(*m_accepted, m_stateSince);
    const Moment quiet = now - std::max(idleSince, m_lastProgress);
    Moment wanted = m_wasBusy ? settleTime : startTime;
    if (m_state == ScannerState::NotKnown) {
        wanted = unknownTime;
    }
    if (m_state != ScannerState::Busy &&
        (quiet >= wanted || (m_wasBusy && now - idleSince >= longestSettling))) {
        return End::Over;
    }
    return now - m_lastLife >= longestSilence ? End::Silent : End::None;
}

} // namespace korvale
