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
bool UserNotifications::isWanted(const QString& message) const {
    const bool isOpen = m_hostCache.hasCurrentUserChangedNotification()
                            ? m_state.showNotifications
                            : m_state.policyShowNotifications;
    return isOpen && !message.isEmpty();
}

void UserNotifications::SendNotification(const QString& message, const QString& subtitle,
                                         int image) {
    send(message, subtitle, image, Urgency::Normal);
}

void UserNotifications::SendUrgentNotification(const QString& message, const QString& subtitle,
                                               int image) {
    send(message, subtitle, image, Urgency::Critical);
}

void UserNotifications::send(const QString& message, const QString& subtitle, int image,
                             Urgency urgency) {
    if (!isWanted(message)) {
        return;
    }
    m_server.deliver({.title = localizedText("ProductEP"),
                      .subtitle = subtitle,
                      .message = message,
                      .picture = m_resources.getImage(image),
                      .link = {},
                      .urgency = urgency});
}

void UserNotifications::SendConsumerNotification(const QString& message, const QString& url) {
    if (isWanted(message)) {
        m_server.deliver({.title = localizedText("ProductEP"),
                          .subtitle = {},
                          .message = message,
                          .picture = {},
                          .link = isOpenableLink(url) ? url : QString()});
    }
}

void UserNotifications::SendSondarNotification(const QString& message) {
    if (isWanted(message)) {
        m_server.deliver({.title = localizedText("KorvaleSONDAR"),
                          .subtitle = {},
                          .message = message,
                          .picture = {},
                          .link = {}});
    }
}

} // namespace korvale
