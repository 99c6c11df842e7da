#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "platform/LinkOpener.h"
#include "platform/NotificationServer.h"

#include <QObject>

namespace korvale {

class HostCache;
class Resources;

/// Desktop notifications: worded, shown only where the user, or else the policy, wants them, and
/// opening their link when the user chooses one. Main thread.
class UserNotifications : public QObject, public NotificationSender {
    Q_OBJECT

public:
    UserNotifications(const AppState& state, const HostCache& hostCache, const Resources& resources,
                      LinkOpener& linkOpener, QObject* parent = nullptr);

    /// The bus whose notification service is used; until then nothing is shown.
    void start(const QDBusConnection& sessionBus) { m_server.start(sessionBus); }

    void SendNotification(const QString& message, const QString& subtitle, int image) override;
    void SendUrgentNotification(const QString& message, const QString& subtitle,
                                int image) override;
    void SendConsumerNotification(const QString& message, const QString& url) override;
    void SendSondarNotification(const QString& message) override;

Q_SIGNALS:
    /// There was something to tell, be it shown or held back as nobody wants to see any.
    void told(const korvale::DesktopNotification& notification, bool isHeldBack);

private:
    void send(const DesktopNotification& notification);
    [[nodiscard]] bool areWanted() const;

    const AppState& m_state;
    const HostCache& m_hostCache;
    const Resources& m_resources;
    NotificationServer m_server;
};

} // namespace korvale
