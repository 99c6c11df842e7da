#pragma once

#include "agent_link/AgentNotificationTable.h"
#include "agent_link/SharedController.h"
#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/JsonValue.h"

#include <QDBusMessage>
#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace korvale {

class Clock;
class NameOwner;
class OwnerSignals;
class SystemBus;

/// What the agent's notifications act on.
struct AgentNotificationsParts {
    AppState& state;
    const Clock& clock;
    StatusDisplay& status;
    IconDisplay& icon;
    NotificationSender& notifications;
    /// HostCache::readFile.
    std::function<std::optional<JsonValue>(const QString& file)> readFile;
    std::function<void()> connectToService;
    std::function<void()> parseTimerAggregatedMessage;
};

/// Listens for the agent's twenty notifications and does what each asks for. Main thread, in the
/// order sent.
class AgentNotifications final : public QObject, public AgentNotificationHandler {
    Q_OBJECT
public:
    explicit AgentNotifications(AgentNotificationsParts parts, QObject* parent = nullptr);
    ~AgentNotifications() override;

    /// Adds the observers, now and each time the bus comes back; they are never removed. Only what
    /// `service`, the present owner of the service's name, sends is heard, also right after it took
    /// the name. Once, and before `service` follows the name on that bus.
    void observe(SystemBus& bus, const NameOwner& service);

    /// Unknown codes count as a sign of life only.
    void HandleAgentNotification(std::uint32_t code) override;

private:
    void onSignal(const QDBusMessage& message);
    void addObservers(SystemBus& bus);
    void act(AgentNotification code);
    void agentStarted();
    void agentStopped();
    void driverNotConnected();
    void applyConnectionRule();
    void applyRunningIconRule();
    void readAnalyzerStatus();
    void sendConsumerNotification();
    void sendBlockedFileNotification(AgentNotification code);
    void sendFixedNotification(AgentNotification code);
    [[nodiscard]] std::optional<QString> readText(const char* file, const char* member) const;

    AgentNotificationsParts m_parts;
    std::unique_ptr<OwnerSignals> m_signals; ///< once it observes
};

} // namespace korvale
