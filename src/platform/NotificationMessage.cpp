#include "platform/NotificationMessage.h"

#include "platform/SafeText.h"

#include <QDBusMetaType>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QStringList>
#include <QVariantMap>

namespace korvale {
namespace {

QString bodyOf(const DesktopNotification& notification, const NotificationAbilities& abilities) {
    const bool hasBodyMarkup = abilities.hasBodyMarkup;
    const auto worded = [hasBodyMarkup](const QString& text) {
        // Cut among other things: a bus drops a client that sends it too much at once.
        const QString shown = severalLinesText(text);
        return hasBodyMarkup ? shown.toHtmlEscaped() : shown;
    };
    QString message = worded(notification.message);
    if (!notification.link.isEmpty() && !abilities.hasActions) {
        message += u'\n' + worded(notification.link); // to be read, or copied, at least
    }
    if (notification.subtitle.isEmpty()) {
        return message;
    }
    const QString subtitle = worded(notification.subtitle);
    return hasBodyMarkup ? QStringLiteral("<b>") + subtitle + QStringLiteral("</b>\n") + message
                         : subtitle + u'\n' + message;
}

NotificationImage wireImage(const QIcon& picture) {
    // Servers show it at 48 pixels and more, on sharp screens at twice that.
    static constexpr QSize size{96, 96};
    const QImage image =
        picture.pixmap(size, 1.0).toImage().convertToFormat(QImage::Format_RGBA8888);
    const void* bits = image.constBits();
    return {.width = image.width(),
            .height = image.height(),
            .rowStride = static_cast<int>(image.bytesPerLine()),
            .data = QByteArray(static_cast<const char*>(bits), image.sizeInBytes())};
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const NotificationImage& image) {
    argument.beginStructure();
    argument << image.width << image.height << image.rowStride << image.hasAlpha
             << image.bitsPerSample << image.channels << image.data;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotificationImage& image) {
    argument.beginStructure();
    argument >> image.width >> image.height >> image.rowStride >> image.hasAlpha >>
        image.bitsPerSample >> image.channels >> image.data;
    argument.endStructure();
    return argument;
}

QString notificationsName() {
    return QStringLiteral("org.freedesktop.Notifications");
}
QString notificationsPath() {
    return QStringLiteral("/org/freedesktop/Notifications");
}

QDBusMessage capabilitiesMessage() {
    return QDBusMessage::createMethodCall(notificationsName(), notificationsPath(),
                                          notificationsName(), QStringLiteral("GetCapabilities"));
}

QDBusMessage notifyMessage(const DesktopNotification& notification,
                           const NotificationAbilities& abilities, const QString& openLabel) {
    static constexpr uint replacesNone = 0;
    static constexpr int serversChoice = -1; // how long it stays
    QStringList actions;
    if (!notification.link.isEmpty()) {
        actions << QStringLiteral("default") << openLabel;
    }
    const QString program = QStringLiteral("com.korvale.ui"); // desktop entry and icon
    QVariantMap hints{
        {QStringLiteral("urgency"), QVariant::fromValue(static_cast<uchar>(notification.urgency))}};
    if (!notification.outlivesSender) {
        hints.insert(QStringLiteral("desktop-entry"), program);
    }
    if (!notification.picture.isNull()) {
        [[maybe_unused]] static const QMetaType registered =
            qDBusRegisterMetaType<NotificationImage>();
        hints.insert(QStringLiteral("image-data"),
                     QVariant::fromValue(wireImage(notification.picture)));
    }
    auto call = QDBusMessage::createMethodCall(notificationsName(), notificationsPath(),
                                               notificationsName(), QStringLiteral("Notify"));
    call << QGuiApplication::applicationDisplayName() << replacesNone << program
         << singleLineText(notification.title) << bodyOf(notification, abilities) << actions
         << hints << serversChoice;
    return call;
}

} // namespace korvale
