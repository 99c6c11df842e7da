#pragma once

#include "agent_link/RequestChannel.h"
#include "agent_link/ServiceCalls.h"
#include "core/base/Displays.h"
#include "platform/OwnerSignals.h"

#include <QDBusMessage>
#include <QObject>

#include <cstdint>
#include <functional>
#include <vector>

namespace korvale {

class SystemBus;

/// The agent service's one named connection: requests with their replies, the messages the service
/// pushes on its own, and the log lines of a connection that breaks. Main thread; Qt's D-Bus thread
/// receives, and nothing here waits for it.
class ServiceChannel final : public QObject, public RequestChannel {
    Q_OBJECT
public:
    ServiceChannel(SystemBus& bus, NotificationSender& notifications, QObject* parent = nullptr);

    /// What connectToService ends with: the query for the driver. To be set before the first call.
    void setDriverQuery(std::function<void()> checkDriverConnection);

    /// Makes a fresh connection, which replaces the one in conn() (requests of the earlier one
    /// still get their replies), and asks for the driver. At launch and each time the agent has
    /// started.
    void connectToService();

    /// Which connection this is, counted from 1; 0 before the first.
    [[nodiscard]] std::uint32_t conn() const { return m_conn; }

    /// Requests made while the bus is first looked for wait for the outcome; later ones without a
    /// bus fail at once. Never starts the service.
    void send(const QVariantMap& envelope, ReplyHandler handler) override;
    [[nodiscard]] std::unique_ptr<ReplyQueue> sendOnPrivateQueue(const QVariantMap& envelope,
                                                                 ReplyHandler handler) override;

    [[nodiscard]] std::uint32_t serviceLife() const override { return m_life; }

    /// The service's owner on the bus: who may speak for it.
    [[nodiscard]] const NameOwner& owner() const { return m_calls.owner(); }

    /// One unsolicited message, an envelope. What is malformed or unknown is ignored.
    void clientReceiveMessage(const QVariantMap& envelope);

Q_SIGNALS:
    /// On a bus, for the first time or again: whatever the service says from here on is heard. What
    /// it said before may have been missed.
    void hearing();

private:
    struct Waiting {
        QVariantMap envelope;
        ReplyHandler handler;
    };

    void followBus();
    void subscribe();
    [[nodiscard]] bool isOnBus() const;
    void sendWaiting();
    void sendNow(const QVariantMap& envelope, const ReplyHandler& handler);
    void onMessage(const QDBusMessage& message);
    void onOwnerChanged(const QString& before);

    SystemBus& m_bus;
    NotificationSender& m_notifications;
    std::function<void()> m_checkDriverConnection;
    ServiceCalls m_calls;
    OwnerSignals m_messages{m_calls.owner()};
    std::vector<Waiting> m_waiting;
    std::uint32_t m_conn = 0;
    std::uint32_t m_life = 0;
    bool m_isHearing = false;
};

} // namespace korvale
