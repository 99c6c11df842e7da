#pragma once

#include "agent_link/RequestChannel.h"
#include "agent_link/ServiceCommand.h"
#include "core/base/AgentCommands.h"
#include "core/base/AppState.h"
#include "core/base/Displays.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>

namespace korvale {

/// How a one-shot start waits for its reply and ends. Off by default; the functions are not called
/// then.
struct AutomationMode {
    bool on = false;
    std::function<void()> sleepOneSecond; ///< holds up the main thread
    std::function<void()> terminate;      ///< asks the application to end
    std::function<double()> now = {};     ///< seconds, monotonic; none: only sleeps take time
};

/// The envelope that carries `command`. `value` is that of the command's other member, where the
/// sender gives it.
[[nodiscard]] QVariantMap requestEnvelope(ServiceCommand command, const QString& value = {});

/// Sends the ten commands and applies their replies. Main thread. Nothing waits, except the five
/// user commands in automation mode, which hold the main thread until the reply was handled or 15
/// seconds have passed, with what it took to reach the bus, and then ask the application to end.
class ServiceCommands final : public AgentCommands {
public:
    ServiceCommands(AppState& state, RequestChannel& channel, StatusDisplay& status,
                    IconDisplay& icon, AutomationMode automation = {});

    void forwardFolderScan(const QString& folder) override;
    void scanBackground() override;
    void stopScan() override;
    void checkUpdates() override;
    void checkPolicyUpdates() override;
    void readLogLevel(int checkedPosition, LogLevelApplied applied) override;
    void logging(int position, LogLevelApplied applied) override;

    void checkDriverConnection();
    void getSondarVersion();

    /// Any query, a command without a value, for a sender who reads the reply itself. Not sent
    /// while the same service has not answered the last one: an agent that hangs would otherwise
    /// use up the number of open calls that the bus allows, and user commands would fail.
    void request(ServiceCommand command, ReplyHandler handler);

private:
    void sendUserCommand(ServiceCommand command, const QString& value = {});
    void sendAndWait(const QVariantMap& envelope, const ReplyHandler& handler);

    AppState& m_state;
    RequestChannel& m_channel;
    StatusDisplay& m_status;
    IconDisplay& m_icon;
    AutomationMode m_automation;
    std::map<ServiceCommand, std::uint32_t> m_unanswered; ///< queries, by the service's life
};

} // namespace korvale
