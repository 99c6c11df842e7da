#pragma once

#include "platform/NotificationServer.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QString>

namespace korvale {

/// A picture as notifications carry it, the structure (iiibiiay): straight RGBA, 8 bits each.
struct NotificationImage {
    int width = 0;
    int height = 0;
    int rowStride = 0; ///< bytes
    bool hasAlpha = true;
    int bitsPerSample = 8;
    int channels = 4;
    QByteArray data;
};

QDBusArgument& operator<<(QDBusArgument& argument, const NotificationImage& image);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotificationImage& image);

[[nodiscard]] QString notificationsName(); ///< bus name and interface
[[nodiscard]] QString notificationsPath();

[[nodiscard]] QDBusMessage capabilitiesMessage();

/// The Notify call. `openLabel` is the label of the action that opens the link, which a service
/// without actions shows as text. Texts far longer than any bubble are cut.
[[nodiscard]] QDBusMessage notifyMessage(const DesktopNotification& notification,
                                         const NotificationAbilities& abilities,
                                         const QString& openLabel);

} // namespace korvale

Q_DECLARE_METATYPE(korvale::NotificationImage)
