#pragma once

#include "agent_link/RequestChannel.h"
#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include <vector>

namespace korvale {

/// The one way by which requests reach the agent service and replies their handlers, and the log
/// lines of a connection that breaks. Lives in the thread that made it, where the handlers run;
/// waits for nothing and nobody.
class ServiceCalls final : public QObject {
    Q_OBJECT
public:
    explicit ServiceCalls(QObject* parent = nullptr);

    /// The bus to use from now on, again for each new connection.
    void follow(const QDBusConnection& bus);
    /// Follows nothing any more, without a word; replies still come.
    void forget();

    /// Never starts the service. On a bus that has gone the handler runs before the return.
    void call(const QVariantMap& envelope, ReplyHandler handler);
    /// Hands on what came as a reply. Only what the present owner of the service's name says
    /// counts; while the owner is not known yet, the reply waits.
    void deliver(const QDBusMessage& reply, const ReplyHandler& handler);

    [[nodiscard]] const NameOwner& owner() const { return m_owner; }

public Q_SLOTS:
    /// The connection has gone: one log line, unless that was said already.
    void busLost();

private:
    void noticeEndOfBus();
    struct Undecided {
        QDBusMessage reply;
        ReplyHandler handler;
    };

    void ownerChanged(const QString& before, const QString& now);

    QDBusConnection m_bus{QString()};
    NameOwner m_owner;
    std::vector<Undecided> m_undecided;
};

} // namespace korvale
