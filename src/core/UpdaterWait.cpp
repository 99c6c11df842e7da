#include "core/UpdaterWait.h"

#include "core/TerminalOutput.h"
#include "core/TerminalStatus.h"
#include "model/UpdaterCrypto.h"

#include <QDateTime>

#include <utility>

namespace korvale {

UpdaterWait::UpdaterWait(TerminalOutput& output, Moment silence, UpdaterStatusFolder folder)
    : m_output(output), m_silence(silence), m_folder(std::move(folder)) {
    while (m_folder.takeNext()) { // what was said before
    }
}

void UpdaterWait::told(AgentNotification what) {
    if (what == AgentNotification::AgentStopped) {
        agentLeft();
    }
}

void UpdaterWait::look() {
    while (const auto path = m_folder.takeNext()) {
        const auto encrypted = readStatusFile(*path);
        const auto message =
            encrypted
                ? UpdaterCrypto::decryptUpdaterMessage(*encrypted, QDateTime::currentDateTime())
                : std::nullopt;
        m_lastWord = now();
        if (message) {
            m_hasSpoken = true;
            m_output.say(*message);
        }
    }
    if (now() - m_lastWord >= m_silence) {
        if (m_hasSpoken) {
            end(TerminalStatus::good);
        } else {
            end(TerminalStatus::noAnswer, "HPS_TermNoUpdater");
        }
    }
}

} // namespace korvale
