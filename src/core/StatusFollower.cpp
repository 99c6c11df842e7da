#include "core/StatusFollower.h"

#include "core/StatusProperties.h"
#include "platform/BusCalls.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace korvale {
namespace {

constexpr int answerLimitMs = 5000;

} // namespace

StatusFollower::StatusFollower(const QDBusConnection& sessionBus, Told told)
    : m_bus(sessionBus), m_program(QString::fromLatin1(statusService)), m_told(std::move(told)) {
    connect(&m_program, &NameOwner::changed, this, &StatusFollower::ask);
    m_bus.connect(QString::fromLatin1(statusService), QString::fromLatin1(statusPath),
                  QStringLiteral("org.freedesktop.DBus.Properties"),
                  QStringLiteral("PropertiesChanged"), this, SLOT(ask()));
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                  this, SLOT(busLost()));
    m_program.follow(m_bus); // and asks once it is known who is there first
}

void StatusFollower::ask() {
    if (m_isAsking) {
        m_isStale = true;
        return;
    }
    QDBusMessage request = QDBusMessage::createMethodCall(
        QString::fromLatin1(statusService), QString::fromLatin1(statusPath),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    request << QString::fromLatin1(statusInterface);
    request.setAutoStartService(false);
    const QDBusPendingCall call = m_bus.asyncCall(request, answerLimitMs);
    if (hasFailedAtOnce(call)) {
        m_told(StatusAnswer::NotRunning, {}); // the bus has gone; a watcher would hear nothing
        return;
    }
    m_isAsking = true;
    m_isStale = false;
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        m_isAsking = false;
        answered(watcher->reply());
        if (m_isStale) {
            ask();
        }
    });
}

void StatusFollower::answered(const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("a{sv}")) {
        m_told(StatusAnswer::Known, qdbus_cast<QVariantMap>(reply.arguments().constFirst()));
        return;
    }
    const QDBusError::ErrorType error = QDBusError(reply).type();
    const bool hasNoOwner = error == QDBusError::ServiceUnknown ||
                            reply.errorName().endsWith(QLatin1String("NameHasNoOwner"));
    m_told(hasNoOwner ? StatusAnswer::NotRunning : StatusAnswer::NoAnswer, {});
}

void StatusFollower::busLost() {
    m_told(StatusAnswer::NotRunning, {});
}

} // namespace korvale
