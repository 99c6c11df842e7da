#include "platform/LastNotification.h"

#include <utility>

namespace korvale {

LastNotification::LastNotification(DesktopNotification notification, QObject* parent)
    : QObject(parent),
      m_bus(static_cast<int>(std::chrono::milliseconds(longestWait).count()), sessionBusAddress),
      m_notification(std::move(notification)) {
    m_notification.outlivesSender = true;
    m_limit.setSingleShot(true);
    m_limit.setInterval(longestWait);
    connect(&m_limit, &QTimer::timeout, this, &LastNotification::ended);
    connect(&m_server, &NotificationServer::settled, this, &LastNotification::ended);
    connect(&m_bus, &SystemBus::firstAttemptFailed, this, &LastNotification::ended);
    connect(&m_bus, &SystemBus::lost, this, &LastNotification::ended);
    connect(&m_bus, &SystemBus::connected, this, [this] {
        m_server.start(m_bus.connection());
        m_server.deliver(m_notification);
    });
}

void LastNotification::send() {
    m_limit.start();
    m_bus.start();
}

} // namespace korvale
