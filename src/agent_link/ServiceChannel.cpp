#include "agent_link/ServiceChannel.h"

#include "agent_link/BusMessages.h"
#include "agent_link/Envelope.h"
#include "agent_link/PrivateReplyQueue.h"
#include "agent_link/ServiceNames.h"
#include "core/base/Logging.h"
#include "platform/SystemBus.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <optional>
#include <utility>

namespace korvale {
namespace {

/// How long a one-shot start waits for a bus that accepts connections and then says nothing.
constexpr int silentBusLimitMs = 2000;

QString busName() {
    return QStringLiteral("org.freedesktop.DBus");
}
QString busPath() {
    return QStringLiteral("/org/freedesktop/DBus");
}

} // namespace

ServiceChannel::ServiceChannel(SystemBus& bus, NotificationSender& notifications, QObject* parent)
    : QObject(parent), m_bus(bus), m_notifications(notifications) {}

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
    connect(&m_bus, &SystemBus::lost, this, [this] {
        m_owner.clear();
        logConnectionEvent("Connection invalid");
    });
    if (m_bus.state() == SystemBus::State::Connected) {
        subscribe();
    }
}

void ServiceChannel::subscribe() {
    QDBusConnection bus = m_bus.connection();
    const QString service = QString::fromLatin1(serviceName);
    bool heard = bus.connect(
        service, QString::fromLatin1(servicePath), QString::fromLatin1(serviceInterface),
        QString::fromLatin1(messageSignal), this, SLOT(onMessage(QDBusMessage)));
    // Without a sender here, which would cost a round trip; the slot looks at it.
    heard &= bus.connect(QString(), busPath(), busName(), QStringLiteral("NameOwnerChanged"),
                         {service}, QString(), this, SLOT(onNameOwnerChanged(QDBusMessage)));
    if (!heard) {
        logLine(LogLevel::Warn, "The agent service's messages cannot be heard.");
    }

    QDBusMessage question = QDBusMessage::createMethodCall(busName(), busPath(), busName(),
                                                           QStringLiteral("GetNameOwner"));
    question << service;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question, noTimeout), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        m_owner = answer->isError() ? QString() : answer->reply().arguments().value(0).toString();
        answer->deleteLater();
    });
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
    const QDBusPendingCall call = m_bus.connection().asyncCall(requestMessage(envelope), noTimeout);
    if (hasFailedAtOnce(call)) {
        handler(nullptr);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, handler] {
        watcher->deleteLater();
        deliver(watcher->reply(), handler);
    });
}

bool ServiceChannel::isOnBus() const {
    return m_conn != 0 && m_bus.state() == SystemBus::State::Connected &&
           m_bus.connection().isConnected();
}

void ServiceChannel::deliver(const QDBusMessage& reply, const ReplyHandler& handler) const {
    const std::optional<QVariantMap> envelope = dictionaryOf(reply);
    // A process that has lost the name in the meantime no longer speaks for the service.
    if (!envelope || reply.service() != m_owner) {
        handler(nullptr);
        return;
    }
    const ServiceReply dictionary(*envelope);
    handler(&dictionary);
}

std::unique_ptr<ReplyQueue> ServiceChannel::sendOnPrivateQueue(const QVariantMap& envelope,
                                                               ReplyHandler handler) {
    m_bus.finishFirstAttempt(silentBusLimitMs);
    if (!isOnBus()) {
        handler(nullptr);
        return std::make_unique<ReplyQueue>();
    }
    return std::make_unique<PrivateReplyQueue>(m_bus.connection(), requestMessage(envelope),
                                               std::move(handler));
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

void ServiceChannel::onNameOwnerChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (message.service() != busName() || arguments.size() != 3) {
        return;
    }
    m_owner = arguments[2].toString();
    if (!arguments[1].toString().isEmpty()) {
        logConnectionEvent("Connection interrupted");
    }
}

void ServiceChannel::logConnectionEvent(const char* description) {
    logLine(LogLevel::Info, "client received event: %s", description);
}

} // namespace korvale
