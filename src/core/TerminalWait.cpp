#include "core/TerminalWait.h"

#include "core/TerminalStatus.h"

#include <utility>

namespace korvale {
namespace {

constexpr std::chrono::milliseconds betweenLooks{500};
constexpr std::chrono::milliseconds stopped{2000};

} // namespace

TerminalWait::TerminalWait() {
    m_clock.start();
    m_timer.setInterval(betweenLooks);
    connect(&m_timer, &QTimer::timeout, this, &TerminalWait::tick);
}

void TerminalWait::begin() {
    m_hasBegun = true;
    m_lastTick = now();
    m_timer.start();
    accepted();
}

/// Whoever was stopped (Ctrl+Z, a machine that slept) hears first what was told meanwhile.
void TerminalWait::tick() {
    const Moment before = std::exchange(m_lastTick, now());
    if (m_lastTick - before < stopped) {
        look();
    }
}

void TerminalWait::agentLeft() {
    if (m_hasBegun) { // else the request itself fails
        end(TerminalStatus::noAgent, "HPS_TermLeft");
    }
}

void TerminalWait::end(int status, const char* complaint) {
    m_timer.stop();
    if (!m_hasEnded) {
        m_hasEnded = true;
        Q_EMIT ended(status, complaint);
    }
}

} // namespace korvale
