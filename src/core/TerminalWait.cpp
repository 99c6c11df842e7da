#include "core/TerminalWait.h"

#include "core/TerminalStatus.h"

namespace korvale {
namespace {

constexpr std::chrono::milliseconds betweenLooks{500};

} // namespace

TerminalWait::TerminalWait() {
    m_clock.start();
    m_timer.setInterval(betweenLooks);
    connect(&m_timer, &QTimer::timeout, this, &TerminalWait::look);
}

void TerminalWait::begin() {
    m_hasBegun = true;
    m_timer.start();
    accepted();
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
