#pragma once

#include "core/base/Displays.h"
#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QIcon>
#include <QObject>
#include <QString>

#include <deque>
#include <optional>

namespace korvale {

/// One desktop notification.
struct DesktopNotification {
    QString title;
    QString subtitle; ///< empty for none
    QString message;
    QIcon picture; ///< null for none
    QString link;  ///< empty for none
    Urgency urgency = Urgency::Normal;
    /// Nobody is left to stand for it: some desktops take the notifications of a desktop entry away
    /// as soon as their sender has left the bus.
    bool outlivesSender = false;
};

/// What a notification service says it can do, as far as it matters here.
struct NotificationAbilities {
    bool hasBodyMarkup = false;
    bool hasActions = false;
};

/// The desktop's notification service (Desktop Notifications Specification), used without ever
/// waiting for it. It is asked what it can do at the first notification, and again at the first one
/// after its owner changed; until it has answered, however late, notifications are kept: nobody can
/// say how to write them. A service that lags behind gets no more than it has answered for, the
/// rest when it goes on. What only others send is not heard. Without a bus or a service nothing is
/// shown and nothing fails. Main thread.
class NotificationServer : public QObject {
    Q_OBJECT

public:
    explicit NotificationServer(QObject* parent = nullptr);

    /// The bus to use from now on, for each new connection. What was delivered before the first is
    /// shown then; one that is not connected shows nothing.
    void start(const QDBusConnection& sessionBus);

    void deliver(const DesktopNotification& notification);

Q_SIGNALS:
    /// The user chose a notification with a link. The token (may be empty) is the desktop's leave
    /// for what opens it to come to the front.
    void linkChosen(const QString& link, const QString& activationToken);
    /// All that was delivered has been taken by a service, or is dropped as there is none. Perhaps
    /// from within deliver().
    void settled();

private Q_SLOTS:
    void hear(const QDBusMessage& signal);

private:
    /// A shown notification that has a link.
    struct Shown {
        QString service; ///< unique name of the one that shows it
        uint number;     ///< its number there
        QString link;
        QString token; ///< what came for the click that is under way
    };

    void ownerChanged(const QString& before);
    void askWhatItCanDo();
    void takeAnswer(const QDBusMessage& reply);
    void keep(const DesktopNotification& notification);
    void showWaiting();
    void show(const DesktopNotification& notification);
    void remember(const Shown& shown);
    void tellIfSettled();

    QDBusConnection m_bus{QString()};
    NameOwner m_owner;
    bool m_isStarted = false;
    std::optional<NotificationAbilities> m_abilities; ///< none while unknown
    bool m_isAsking = false;
    int m_question = 0; ///< number of the last one; the answers to earlier ones are stale
    std::deque<DesktopNotification> m_waiting; ///< for the answer, or the service to catch up
    std::size_t m_unanswered = 0;              ///< notifications sent to the present owner
    int m_owners = 0;                          ///< so far; answers of earlier ones count nothing
    std::deque<Shown> m_links;                 ///< the oldest first
};

} // namespace korvale
