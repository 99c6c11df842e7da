#include "agent_link/PrivateReplyQueue.h"

#include "agent_link/BusMessages.h"
#include "agent_link/Envelope.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace korvale {

PrivateReplyQueue::PrivateReplyQueue(const QDBusConnection& bus, const QDBusMessage& request,
                                     ReplyHandler handler)
    : m_bus(bus), m_request(request), m_handler(std::move(handler)) {
    setObjectName(QStringLiteral("com.korvale.uirevrevs"));
    start();
}

PrivateReplyQueue::~PrivateReplyQueue() {
    quit();
    wait();
}

void PrivateReplyQueue::run() {
    const QDBusPendingCall call = m_bus.asyncCall(m_request, noTimeout);
    if (call.isFinished()) {
        deliver(call.reply());
        return;
    }
    const QDBusPendingCallWatcher watcher(call);
    connect(&watcher, &QDBusPendingCallWatcher::finished, &watcher,
            [this](QDBusPendingCallWatcher* finished) {
                deliver(finished->reply());
                quit();
            });
    exec();
}

void PrivateReplyQueue::deliver(const QDBusMessage& reply) {
    const std::optional<QVariantMap> envelope = dictionaryOf(reply);
    if (!envelope) {
        m_handler(nullptr);
        return;
    }
    const ServiceReply dictionary(*envelope);
    m_handler(&dictionary);
}

} // namespace korvale
