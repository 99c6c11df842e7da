#include "agent/bus/AgentBus.h"

#include "agent/bus/Envelope.h"
#include "agent/publish/NotificationNames.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>

namespace korvale::agent {
namespace {

QString connectionName() {
    return QStringLiteral("korvale-agent");
}

} // namespace

AgentBus::AgentBus(QDBusVirtualObject& object, std::chrono::milliseconds retryPeriod,
                   QObject* parent)
    : QObject(parent), m_object(object) {
    m_retry.setInterval(retryPeriod);
    connect(&m_retry, &QTimer::timeout, this, &AgentBus::attempt);
}

AgentBus::~AgentBus() {
    QDBusConnection::disconnectFromBus(connectionName());
}

QDBusConnection AgentBus::connection() {
    return QDBusConnection(connectionName());
}

void AgentBus::takeName() {
    m_wantsName = true;
    attempt();
}

bool AgentBus::releaseName() {
    m_wantsName = false;
    m_retry.stop();
    if (!m_ownsName) {
        return false;
    }
    m_ownsName = false;
    return connection().unregisterService(kServiceName.toString());
}

void AgentBus::attempt() {
    if ((m_connected || connectToBus()) && (!m_wantsName || m_ownsName || requestName())) {
        m_retry.stop();
        m_lastProblem.clear();
    } else {
        m_retry.start();
    }
}

bool AgentBus::connectToBus() {
    // A connection that failed stays failed under its name until it is given up.
    QDBusConnection::disconnectFromBus(connectionName());
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName());
    if (!bus.isConnected()) {
        report(QStringLiteral("There is no system bus to join (%1). Trying again.")
                   .arg(bus.lastError().message()));
        return false;
    }
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(disconnected()));
    // The object is there before the name is: a request can follow the name at once.
    m_connected = bus.registerVirtualObject(kObjectPath.toString(), &m_object);
    return m_connected;
}

bool AgentBus::requestName() {
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        connection().interface()->registerService(kServiceName.toString(),
                                                  QDBusConnectionInterface::DontQueueService,
                                                  QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        report(QStringLiteral("The bus does not give out the name %1 (%2). Trying again.")
                   .arg(kServiceName, reply.error().message()));
        return false;
    }
    if (reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        report(QStringLiteral("Another process owns the name %1. Trying again.").arg(kServiceName));
        return false;
    }
    m_ownsName = true;
    Q_EMIT nameOwned();
    return true;
}

void AgentBus::disconnected() {
    m_connected = false;
    m_ownsName = false;
    Q_EMIT busLost();
    m_retry.start();
}

void AgentBus::report(const QString& sentence) {
    if (sentence != m_lastProblem) {
        m_lastProblem = sentence;
        Q_EMIT problem(sentence);
    }
}

bool AgentBus::post(const QString& notification) {
    const SignalName name = signalName(notification);
    return m_connected && connection().send(QDBusMessage::createSignal(
                              kObjectPath.toString(), name.interface, name.member));
}

bool AgentBus::sendMessage(const QByteArray& data) {
    QDBusMessage message = QDBusMessage::createSignal(
        kObjectPath.toString(), kServiceName.toString(), QStringLiteral("Message"));
    message << envelope(data);
    return m_connected && connection().send(message);
}

} // namespace korvale::agent
