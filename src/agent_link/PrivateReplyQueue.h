#pragma once

#include "agent_link/RequestChannel.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QThread>

namespace korvale {

/// A thread that sends one request, handles its reply and ends. The watcher of the reply has to be
/// made in the thread that waits for it, as a watcher that is moved there may miss the reply.
class PrivateReplyQueue final : public QThread, public ReplyQueue {
    Q_OBJECT
public:
    PrivateReplyQueue(const QDBusConnection& bus, const QDBusMessage& request,
                      ReplyHandler handler);
    ~PrivateReplyQueue() override;

protected:
    void run() override;

private:
    void deliver(const QDBusMessage& reply);

    QDBusConnection m_bus;
    QDBusMessage m_request;
    ReplyHandler m_handler;
};

} // namespace korvale
