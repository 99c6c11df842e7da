#include "agent_link/PrivateReplyQueue.h"

#include "agent_link/ServiceCalls.h"

#include <utility>

namespace korvale {

PrivateReplyQueue::PrivateReplyQueue(const QDBusConnection& bus, QVariantMap envelope,
                                     ReplyHandler handler)
    : m_bus(bus), m_envelope(std::move(envelope)), m_handler(std::move(handler)) {
    setObjectName(QStringLiteral("com.korvale.uirevrevs"));
    start();
}

PrivateReplyQueue::~PrivateReplyQueue() {
    quit();
    wait();
}

void PrivateReplyQueue::run() {
    ServiceCalls calls;
    calls.follow(m_bus);
    calls.call(m_envelope, [this](const ServiceReply* reply) {
        m_handler(reply);
        quit();
    });
    exec();
}

} // namespace korvale
