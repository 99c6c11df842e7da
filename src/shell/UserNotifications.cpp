#include "shell/UserNotifications.h"

#include "model/HostCache.h"
#include "platform/Texts.h"
#include "shell/Resources.h"

namespace korvale {

UserNotifications::UserNotifications(const AppState& state, const HostCache& hostCache,
                                     const Resources& resources, LinkOpener& linkOpener,
                                     QObject* parent)
    : QObject(parent), m_state(state), m_hostCache(hostCache), m_resources(resources) {
    connect(&m_server, &NotificationServer::linkChosen, this,
            [&linkOpener](const QString& link, const QString& activationToken) {
                linkOpener.openLink(link, activationToken);
            });
}

/// Once the user has chosen, the policy no longer counts. Asked for every notification.
bool UserNotifications::areWanted() const {
    return m_hostCache.hasCurrentUserChangedNotification() ? m_state.showNotifications
                                                           : m_state.policyShowNotifications;
}

void UserNotifications::send(const DesktopNotification& notification) {
    if (notification.message.isEmpty()) {
        return;
    }
    const bool isWanted = areWanted();
    Q_EMIT told(notification, !isWanted);
    if (isWanted) {
        m_server.deliver(notification);
    }
}

void UserNotifications::SendNotification(const QString& message, const QString& subtitle,
                                         int image) {
    send({.title = localizedText("ProductEP"),
          .subtitle = subtitle,
          .message = message,
          .picture = m_resources.getImage(image),
          .link = {}});
}

void UserNotifications::SendUrgentNotification(const QString& message, const QString& subtitle,
                                               int image) {
    send({.title = localizedText("ProductEP"),
          .subtitle = subtitle,
          .message = message,
          .picture = m_resources.getImage(image),
          .link = {},
          .urgency = Urgency::Critical});
}

void UserNotifications::SendConsumerNotification(const QString& message, const QString& url) {
    send({.title = localizedText("ProductEP"),
          .subtitle = {},
          .message = message,
          .picture = {},
          .link = isOpenableLink(url) ? url : QString()});
}

void UserNotifications::SendSondarNotification(const QString& message) {
    send({.title = localizedText("KorvaleSONDAR"),
          .subtitle = {},
          .message = message,
          .picture = {},
          .link = {}});
}

} // namespace korvale
