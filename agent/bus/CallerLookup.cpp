#include "agent/bus/CallerLookup.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace korvale::agent {
namespace {

/// Without the groups nobody could tell what the user may read: then there is no caller.
std::optional<Caller> callerOf(const QString& busName, const QVariantMap& credentials) {
    bool isNumber = false;
    const uint uid = credentials.value(QStringLiteral("UnixUserID")).toUInt(&isNumber);
    const QVariant groups = credentials.value(QStringLiteral("UnixGroupIDs"));
    if (!isNumber || groups.metaType() != QMetaType::fromType<QDBusArgument>() ||
        groups.value<QDBusArgument>().currentSignature() != QLatin1String("au")) {
        return std::nullopt;
    }
    const auto list = qdbus_cast<QList<uint>>(groups);
    return Caller{busName, uid, {list.begin(), list.end()}};
}

} // namespace

void CallerLookup::ask(const QDBusConnection& connection, const QString& busName,
                       const Answer& answer) {
    if (const auto known = m_known.constFind(busName); known != m_known.constEnd()) {
        answer(*known);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionCredentials"));
    call << busName;
    auto* watcher = new QDBusPendingCallWatcher(connection.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, busName, answer] {
        watcher->deleteLater();
        const QDBusPendingReply<QVariantMap> reply = *watcher;
        const std::optional<Caller> caller =
            reply.isError() ? std::nullopt : callerOf(busName, reply.value());
        if (caller) {
            if (m_known.size() >= kMostKnown) {
                m_known.clear();
            }
            m_known.insert(busName, *caller);
        }
        answer(caller);
    });
}

} // namespace korvale::agent
