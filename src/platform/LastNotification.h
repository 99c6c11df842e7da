#pragma once

#include "platform/NotificationServer.h"
#include "platform/SystemBus.h"

#include <QObject>
#include <QTimer>

#include <chrono>

namespace korvale {

/// The one desktop notification of a program that ends right after it. Main thread; nothing here
/// waits, whatever the session bus or the service does.
class LastNotification final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::seconds longestWait{5};

    explicit LastNotification(DesktopNotification notification, QObject* parent = nullptr);

    /// Needs an event loop.
    void send();

Q_SIGNALS:
    /// A service has it, or there is none, or none that answers in time.
    void ended();

private:
    SystemBus m_bus; ///< the session's
    NotificationServer m_server;
    DesktopNotification m_notification;
    QTimer m_limit;
};

} // namespace korvale
