#pragma once

#include "agent_link/RequestChannel.h"

#include <QDBusConnection>
#include <QThread>
#include <QVariantMap>

namespace korvale {

/// A thread that sends one request, handles its reply and ends; in between it logs what becomes of
/// the connection. The watcher of the reply has to be made in the thread that waits for it, as a
/// watcher that is moved there may miss the reply.
class PrivateReplyQueue final : public QThread, public ReplyQueue {
    Q_OBJECT
public:
    PrivateReplyQueue(const QDBusConnection& bus, QVariantMap envelope, ReplyHandler handler);
    ~PrivateReplyQueue() override;

protected:
    void run() override;

private:
    QDBusConnection m_bus;
    QVariantMap m_envelope;
    ReplyHandler m_handler;
};

} // namespace korvale
