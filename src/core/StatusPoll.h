#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/UpdaterStatusFolder.h"

#include <QString>

#include <chrono>
#include <optional>

namespace korvale {

class Clock;
class HostCache;
class ServiceCommands;
class ServiceReply;

inline constexpr std::chrono::milliseconds statusPollPeriod{2500};

/// What the poll acts on besides the state.
struct StatusPollParts {
    const Clock& clock;
    const HostCache& hostCache;
    ServiceCommands& service;
    StatusDisplay& status;
    /// Told when the name is another than last time; at first it shows that of the construction.
    DeviceNameDisplay& deviceName;
    NotificationMark& notificationMark;
};

/// Everything that the program learns by asking: each tick looks for an updater message, for the
/// agent's silence and, once a minute, for what the agent service can tell. Main thread; nothing
/// waits.
class StatusPoll {
public:
    StatusPoll(AppState& state, const StatusPollParts& parts,
               UpdaterStatusFolder updaterStatus = UpdaterStatusFolder());

    /// One tick.
    void timerFired();

private:
    [[nodiscard]] bool displayUpdaterStatus();
    void sendQueries();
    void applyCustomName(const ServiceReply& reply);
    void applyPolicy(const ServiceReply& reply);
    void applyPolicyUpdateTime(const ServiceReply& reply);

    AppState& m_state;
    StatusPollParts m_parts;
    UpdaterStatusFolder m_updaterStatus;
    std::optional<double> m_lastQueryTime;
    QString m_shownDeviceName;
};

} // namespace korvale
