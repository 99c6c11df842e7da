#include "agent_link/ServiceCalls.h"

#include "agent_link/BusMessages.h"
#include "agent_link/Envelope.h"
#include "agent_link/ServiceNames.h"
#include "core/base/Logging.h"
#include "platform/BusCalls.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <optional>
#include <utility>

namespace korvale {
namespace {

void logConnectionEvent(const char* description) {
    logLine(LogLevel::Info, "client received event: %s", description);
}

void handOn(const QDBusMessage& reply, bool isOwners, const ReplyHandler& handler) {
    const std::optional<QVariantMap> envelope = dictionaryOf(reply);
    // A process that has lost the name in the meantime no longer speaks for the service.
    if (!envelope || !isOwners) {
        handler(nullptr);
        return;
    }
    const ServiceReply dictionary(*envelope);
    handler(&dictionary);
}

} // namespace

ServiceCalls::ServiceCalls(QObject* parent)
    : QObject(parent), m_owner(QString::fromLatin1(serviceName)) {
    connect(&m_owner, &NameOwner::changed, this, &ServiceCalls::ownerChanged);
}

void ServiceCalls::follow(const QDBusConnection& bus) {
    m_bus = bus;
    m_owner.follow(bus);
}

void ServiceCalls::forget() {
    m_bus = QDBusConnection(QString());
    m_owner.forget();
    for (const Undecided& undecided : std::exchange(m_undecided, {})) {
        handOn(undecided.reply, false, undecided.handler);
    }
}

void ServiceCalls::busLost() {
    if (!m_bus.name().isEmpty()) {
        logConnectionEvent("Connection invalid");
        forget();
    }
}

/// The errors of calls come before that news.
void ServiceCalls::noticeEndOfBus() {
    if (!m_bus.isConnected()) {
        busLost();
    }
}

void ServiceCalls::call(const QVariantMap& envelope, ReplyHandler handler) {
    const QDBusPendingCall pending = m_bus.asyncCall(requestMessage(envelope), noTimeout);
    if (hasFailedAtOnce(pending)) {
        noticeEndOfBus();
        handler(nullptr);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, handler = std::move(handler)] {
                watcher->deleteLater();
                noticeEndOfBus();
                deliver(watcher->reply(), handler);
            });
}

void ServiceCalls::deliver(const QDBusMessage& reply, const ReplyHandler& handler) {
    const NameOwner::Is sender = m_owner.compare(reply.service());
    if (sender == NameOwner::Is::NotKnown && m_bus.isConnected() && dictionaryOf(reply)) {
        m_undecided.push_back({reply, handler});
    } else {
        handOn(reply, sender == NameOwner::Is::Owner, handler);
    }
}

void ServiceCalls::ownerChanged(const QString& before, const QString& now) {
    for (const Undecided& undecided : std::exchange(m_undecided, {})) {
        handOn(undecided.reply, !now.isEmpty() && undecided.reply.service() == now,
               undecided.handler);
    }
    if (!before.isEmpty()) {
        logConnectionEvent("Connection interrupted");
    }
}

} // namespace korvale
