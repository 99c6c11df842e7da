#include "platform/NotificationServer.h"

#include "platform/NotificationMessage.h"
#include "platform/Texts.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace korvale {
namespace {

// A service that hangs or never closes anything must not make the program grow.
constexpr std::size_t mostWaiting = 50;
constexpr std::size_t mostLinks = 100;

} // namespace

void NotificationServer::start(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    if (!m_bus.isConnected()) {
        return;
    }
    // Without a service, since naming one makes Qt ask for its owner and wait: who sent a signal is
    // compared in the slot.
    const QString path = notificationsPath();
    const QString name = notificationsName();
    m_bus.connect(QString(), path, name, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString, QDBusMessage)));
    m_bus.connect(QString(), path, name, QStringLiteral("NotificationClosed"), this,
                  SLOT(notificationClosed(uint, uint, QDBusMessage)));
    auto* owners =
        new QDBusServiceWatcher(name, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString& before) {
                m_hasBodyMarkup.reset();
                std::erase_if(m_links,
                              [&before](const auto& shown) { return shown.first.first == before; });
            });
}

void NotificationServer::deliver(const DesktopNotification& notification) {
    if (!m_bus.isConnected()) {
        return;
    }
    if (m_hasBodyMarkup) {
        show(notification, *m_hasBodyMarkup);
        return;
    }
    if (m_waiting.size() == mostWaiting) {
        m_waiting.pop_front();
    }
    m_waiting.push_back(notification);
    if (!m_isAsking) {
        askWhatItCanDo();
    }
}

void NotificationServer::askWhatItCanDo() {
    m_isAsking = true;
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(capabilitiesMessage()), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        m_isAsking = false;
        const QDBusMessage reply = answer->reply();
        const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage;
        const bool hasBodyMarkup = isAnswer && reply.arguments().value(0).toStringList().contains(
                                                   QLatin1String("body-markup"));
        if (isAnswer) {
            m_hasBodyMarkup = hasBodyMarkup;
        }
        for (const DesktopNotification& notification : std::exchange(m_waiting, {})) {
            show(notification, hasBodyMarkup);
        }
    });
}

void NotificationServer::show(const DesktopNotification& notification, bool hasBodyMarkup) {
    const QDBusMessage call =
        notifyMessage(notification, hasBodyMarkup, localizedText("NotificationActionOpenLink"));
    if (notification.link.isEmpty()) {
        m_bus.send(call);
        return;
    }
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, answer, link = notification.link] {
                answer->deleteLater();
                const QDBusMessage reply = answer->reply();
                if (reply.type() != QDBusMessage::ReplyMessage) {
                    return;
                }
                if (m_links.size() == mostLinks) {
                    m_links.erase(m_links.begin());
                }
                m_links[{reply.service(), reply.arguments().value(0).toUInt()}] = link;
            });
}

void NotificationServer::actionInvoked(uint id, const QString& action,
                                       const QDBusMessage& message) {
    // Every program on the bus hears of every notification.
    const auto shown = m_links.find({message.service(), id});
    if (shown != m_links.end() && action == QLatin1String("default")) {
        Q_EMIT linkChosen(QString(shown->second));
    }
}

void NotificationServer::notificationClosed(uint id, uint /*reason*/, const QDBusMessage& message) {
    m_links.erase({message.service(), id});
}

} // namespace korvale
