#pragma once

#include "agent_link/AgentNotificationTable.h"
#include "agent_link/SharedController.h"
#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/JsonValue.h"

#include <QDBusMessage>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <list>
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
/// order sent; of several batches that wait, the last one stands for all, since it reads what all
/// of them wrote. Between two of them the event loop turns, so that no flood freezes the window.
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
    /// What one notification does, with the texts it needs.
    struct Action;

    void addObservers(SystemBus& bus);
    void onSignal(const QDBusMessage& message);
    void enqueue(const AgentNotificationRow& row);
    void handleNext();
    [[nodiscard]] static const Action* actionOf(AgentNotification code);

    void agentStarted(const Action& action);
    void agentStopped(const Action& action);
    void agentRunning(const Action& action);
    void halyxChanged(const Action& action);
    void quillmarChanged(const Action& action);
    void driverConnected(const Action& action);
    void driverNotConnected(const Action& action);
    void parseBatch(const Action& action);
    void readAnalyzerStatus(const Action& action);
    void sendConsumerNotification(const Action& action);
    void sendBlockedFileNotification(const Action& action);
    void backgroundScanEnded(const Action& action);
    void sendFixedNotification(const Action& action);
    void applyConnectionRule();
    void applyRunningIconRule();
    [[nodiscard]] std::optional<QString> readText(const char* file, const char* member) const;

    AgentNotificationsParts m_parts;
    std::unique_ptr<OwnerSignals> m_signals; ///< once it observes
    using Waiting = std::list<const AgentNotificationRow*>;
    Waiting m_waiting;                           ///< heard, and not handled yet
    Waiting::iterator m_batch = m_waiting.end(); ///< the one batch among them
    QTimer m_next;
};

} // namespace korvale
