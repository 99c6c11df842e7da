#include "agent_link/ServiceChannel.h"

#include "agent_link/BusMessages.h"
#include "agent_link/Envelope.h"
#include "agent_link/PrivateReplyQueue.h"
#include "agent_link/ServiceNames.h"
#include "core/base/Logging.h"
#include "platform/SystemBus.h"

#include <QDBusConnection>

#include <optional>
#include <utility>

namespace korvale {
namespace {

/// How long a one-shot start waits for a bus that accepts connections and then says nothing.
constexpr int silentBusLimitMs = 2000;

} // namespace

ServiceChannel::ServiceChannel(SystemBus& bus, NotificationSender& notifications, QObject* parent)
    : QObject(parent), m_bus(bus), m_notifications(notifications) {
    connect(&m_messages, &OwnerSignals::received, this, &ServiceChannel::onMessage);
    connect(&m_calls.owner(), &NameOwner::changed, this, &ServiceChannel::onOwnerChanged);
}

void ServiceChannel::setDriverQuery(std::function<void()> checkDriverConnection) {
    m_checkDriverConnection = std::move(checkDriverConnection);
}

void ServiceChannel::connectToService() {
    // A name on the bus needs no new connection of its own: what is fresh is the number.
    if (++m_conn == 1) {
        followBus();
    }
    if (m_checkDriverConnection) {
        m_checkDriverConnection();
    }
}

void ServiceChannel::followBus() {
    connect(&m_bus, &SystemBus::connected, this, [this] {
        subscribe();
        sendWaiting();
    });
    connect(&m_bus, &SystemBus::firstAttemptFailed, this, &ServiceChannel::sendWaiting);
    connect(&m_bus, &SystemBus::lost, &m_calls, &ServiceCalls::busLost);
    connect(&m_bus, &SystemBus::lost, this, [this] { ++m_life; });
    if (m_bus.state() == SystemBus::State::Connected) {
        subscribe();
    }
}

void ServiceChannel::subscribe() {
    const bool heard = m_messages.hear(m_bus.connection(), {QString::fromLatin1(servicePath),
                                                            QString::fromLatin1(serviceInterface),
                                                            QString::fromLatin1(messageSignal),
                                                            {}});
    if (!heard) {
        logLine(LogLevel::Warn, "The agent service's messages cannot be heard.");
    }
    m_isHearing = false;
    m_calls.follow(m_bus.connection());
}

void ServiceChannel::onOwnerChanged(const QString& before) {
    if (!before.isEmpty()) {
        ++m_life;
    }
    // The bus has answered the question for the owner, and so had all rules before.
    if (!std::exchange(m_isHearing, true)) {
        Q_EMIT hearing();
    }
}

void ServiceChannel::send(const QVariantMap& envelope, ReplyHandler handler) {
    if (m_conn != 0 && m_bus.state() == SystemBus::State::FirstAttempt) {
        m_waiting.push_back({envelope, std::move(handler)});
    } else {
        sendNow(envelope, handler);
    }
}

void ServiceChannel::sendWaiting() {
    for (const Waiting& waiting : std::exchange(m_waiting, {})) {
        sendNow(waiting.envelope, waiting.handler);
    }
}

void ServiceChannel::sendNow(const QVariantMap& envelope, const ReplyHandler& handler) {
    if (!isOnBus()) {
        handler(nullptr);
        return;
    }
    m_calls.call(envelope, handler);
}

bool ServiceChannel::isOnBus() const {
    return m_conn != 0 && m_bus.state() == SystemBus::State::Connected &&
           m_bus.connection().isConnected();
}

std::unique_ptr<ReplyQueue> ServiceChannel::sendOnPrivateQueue(const QVariantMap& envelope,
                                                               ReplyHandler handler) {
    m_bus.finishFirstAttempt(silentBusLimitMs);
    if (!isOnBus()) {
        handler(nullptr);
        return std::make_unique<ReplyQueue>();
    }
    m_calls.forget(); // the queue logs what becomes of the connection, and once is enough
    return std::make_unique<PrivateReplyQueue>(m_bus.connection(), envelope, std::move(handler));
}

void ServiceChannel::clientReceiveMessage(const QVariantMap& envelope) {
    const ServiceReply message(envelope);
    if (message.text("CMD_") != QStringLiteral("SondarNotificationMessage")) {
        return;
    }
    if (const std::optional<QString> text = message.text("VALU")) {
        m_notifications.SendSondarNotification(*text);
    }
}

void ServiceChannel::onMessage(const QDBusMessage& message) {
    if (const std::optional<QVariantMap> envelope = dictionaryOf(message)) {
        clientReceiveMessage(*envelope);
    }
}

} // namespace korvale
