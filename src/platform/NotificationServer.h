#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QImage>
#include <QObject>
#include <QString>

#include <deque>
#include <map>
#include <optional>
#include <utility>

namespace korvale {

/// One desktop notification.
struct DesktopNotification {
    QString title;
    QString subtitle; ///< empty for none
    QString message;
    QImage image; ///< null for none
    QString link; ///< empty for none
};

/// The desktop's notification service (Desktop Notifications Specification), used without ever
/// waiting for it. It is asked what it can do at the first notification, and again at the first one
/// after its owner changed; what only others send is not heard. Without a bus or a service nothing
/// is shown and nothing fails. Main thread.
class NotificationServer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The bus to use from now on. Once; what was delivered before is lost.
    void start(const QDBusConnection& sessionBus);

    void deliver(const DesktopNotification& notification);

Q_SIGNALS:
    /// The user chose a notification with a link.
    void linkChosen(const QString& link);

private Q_SLOTS:
    void actionInvoked(uint id, const QString& action, const QDBusMessage& message);
    void notificationClosed(uint id, uint reason, const QDBusMessage& message);

private:
    /// A shown notification: the unique name of the service that shows it, and its number there.
    using Shown = std::pair<QString, uint>;

    void askWhatItCanDo();
    void show(const DesktopNotification& notification, bool hasBodyMarkup);

    QDBusConnection m_bus{QString()};
    std::optional<bool> m_hasBodyMarkup; ///< none while unknown
    bool m_isAsking = false;
    std::deque<DesktopNotification> m_waiting; ///< for the answer to the question
    std::map<Shown, QString> m_links;          ///< of the notifications that have one
};

} // namespace korvale
