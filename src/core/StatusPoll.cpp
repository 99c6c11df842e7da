#include "core/StatusPoll.h"

#include "agent_link/Envelope.h"
#include "agent_link/ServiceCommands.h"
#include "core/base/Logging.h"
#include "model/HostCache.h"
#include "model/UpdaterCrypto.h"
#include "platform/Clock.h"

#include <array>
#include <limits>
#include <utility>

namespace korvale {
namespace {

// In seconds.
constexpr double agentSilenceLimit = 300;
constexpr double queryPeriod = 60;
constexpr double statusRefreshPeriod = 2.5;

/// What never happened is longer ago than anything.
double secondsSince(std::optional<double> moment, double now) {
    return moment ? now - *moment : std::numeric_limits<double>::infinity();
}

} // namespace

StatusPoll::StatusPoll(AppState& state, const StatusPollParts& parts,
                       UpdaterStatusFolder updaterStatus)
    : m_state(state),
      m_parts(parts),
      m_updaterStatus(std::move(updaterStatus)),
      m_shownDeviceName(state.customName) {}

void StatusPoll::timerFired() {
    const double now = m_parts.clock.now();
    if (displayUpdaterStatus()) {
        return; // everything else waits for the next tick
    }
    if (secondsSince(m_state.lastAgentReportTime, now) >= agentSilenceLimit) {
        m_state.agentIsAway = true;
        m_parts.status.updateStatusMessage(StatusState::NotRunning);
    }
    if (secondsSince(m_lastQueryTime, now) >= queryPeriod) {
        m_lastQueryTime = now;
        sendQueries();
    }
    if (secondsSince(m_state.lastStatusReportTime, now) > statusRefreshPeriod) {
        m_parts.status.updateStatusMessage(m_state.statusState);
    }
    if (m_shownDeviceName != m_state.customName) {
        m_shownDeviceName = m_state.customName;
        m_parts.deviceName.showDeviceName();
    }
}

/// True when there was a new status file, whether or not it could be read.
bool StatusPoll::displayUpdaterStatus() {
    const std::optional<QString> path = m_updaterStatus.takeNext();
    if (!path) {
        return false;
    }
    logLine(LogLevel::Info, "Displaying (%@)", *path);
    if (const std::optional<QString> encrypted = readStatusFile(*path)) {
        // A message that cannot be decrypted replaces the earlier one, too: with nothing.
        m_state.updateStatus =
            UpdaterCrypto::decryptUpdaterMessage(*encrypted, m_parts.clock.localTime())
                .value_or(QString());
        m_parts.status.updateStatusMessage(StatusState::UpdaterMessage);
    }
    return true;
}

void StatusPoll::sendQueries() {
    struct Query {
        ServiceCommand command;
        void (StatusPoll::*apply)(const ServiceReply&);
    };
    static constexpr std::array queries{
        Query{ServiceCommand::GetCustomName, &StatusPoll::applyCustomName},
        Query{ServiceCommand::GetPolicy, &StatusPoll::applyPolicy},
        Query{ServiceCommand::GetPolicyUpdateTime, &StatusPoll::applyPolicyUpdateTime},
    };
    for (const Query& query : queries) {
        m_parts.service.request(query.command,
                                [this, apply = query.apply](const ServiceReply* reply) {
                                    if (reply != nullptr) {
                                        (this->*apply)(*reply);
                                    }
                                });
    }
    m_parts.service.getSondarVersion();
}

void StatusPoll::applyCustomName(const ServiceReply& reply) {
    if (const auto name = reply.text("VALU")) {
        m_state.customName = *name; // a later tick shows it
    }
}

void StatusPoll::applyPolicy(const ServiceReply& reply) {
    if (const auto name = reply.text("PNAME")) {
        m_state.policyName = *name;
    }
    if (const auto mode = reply.text("PMODE")) {
        m_state.policyMode = *mode;
        // Under a local policy there is nothing to be connected to. The icon stays as it is, and
        // one without a colour yet says that no connection was ever reported.
        if (m_state.curIconDispColor != IconColor::Red && *mode == u"Local Policy") {
            m_state.halyxConnected = false;
            m_state.quillmarConnected = false;
        }
    }
    if (const auto notifications = reply.text("PNOTF")) {
        m_state.policyShowNotifications = *notifications == u"OK";
        // The user's own choice wins over the policy.
        if (!m_parts.hostCache.hasCurrentUserChangedNotification()) {
            m_parts.notificationMark.setShowNotificationsMark(m_state.policyShowNotifications);
            m_state.showNotifications = m_state.policyShowNotifications;
        }
    }
}

void StatusPoll::applyPolicyUpdateTime(const ServiceReply& reply) {
    if (reply.isOk()) {
        m_state.policyLastUpdateTime = reply.text("VALU").value_or(QStringLiteral(""));
    }
}

} // namespace korvale
