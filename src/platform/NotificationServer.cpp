#include "platform/NotificationServer.h"

#include "platform/BusCalls.h"
#include "platform/BusSignals.h"
#include "platform/NotificationMessage.h"
#include "platform/Texts.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <utility>

namespace korvale {
namespace {

// A service that hangs or never closes anything must not make the program grow: a sent notification
// has its picture with it, one that waits its texts alone.
constexpr std::size_t mostWaiting = 50;    // nobody knows yet how to write them
constexpr std::size_t mostUnanswered = 50; // sent
constexpr std::size_t mostLate = 500;      // more than the service has caught up with
constexpr std::size_t mostLinks = 100;
constexpr qsizetype longestKept = 8192; // characters of a text, far more than is ever shown

} // namespace

NotificationServer::NotificationServer(QObject* parent)
    : QObject(parent), m_owner(notificationsName()) {
    connect(&m_owner, &NameOwner::changed, this, &NotificationServer::ownerChanged);
}

void NotificationServer::start(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    m_isStarted = true;
    m_abilities.reset();
    m_isAsking = false;
    m_links.clear();
    ++m_owners;
    m_unanswered = 0;
    if (!m_bus.isConnected()) {
        m_owner.forget();
        m_waiting.clear();
        return;
    }
    hearSignals(m_bus, {notificationsPath(), notificationsName(), {}, {}}, this,
                SLOT(hear(QDBusMessage)));
    m_owner.followChanges(m_bus);
    if (!m_waiting.empty()) {
        askWhatItCanDo();
    }
}

void NotificationServer::ownerChanged(const QString& before) {
    if (before.isEmpty()) {
        return; // the question, if there is one, is waiting for this very owner
    }
    m_abilities.reset();
    ++m_owners;
    m_unanswered = 0;
    std::erase_if(m_links, [&before](const Shown& shown) { return shown.service == before; });
    if (m_isAsking || !m_waiting.empty()) {
        askWhatItCanDo(); // whoever was asked can no longer answer
    }
}

void NotificationServer::deliver(const DesktopNotification& notification) {
    if (m_isStarted && !m_bus.isConnected()) {
        return;
    }
    keep(notification);
    if (m_abilities) {
        showWaiting();
    } else if (m_isStarted && !m_isAsking) {
        askWhatItCanDo();
    }
}

void NotificationServer::keep(const DesktopNotification& notification) {
    if (m_waiting.size() == (m_abilities ? mostLate : mostWaiting)) {
        m_waiting.pop_front();
    }
    DesktopNotification& kept = m_waiting.emplace_back(notification);
    for (QString* text : {&kept.title, &kept.subtitle, &kept.message}) {
        text->truncate(longestKept);
    }
}

void NotificationServer::showWaiting() {
    while (m_abilities && !m_waiting.empty() && m_unanswered < mostUnanswered) {
        show(m_waiting.front());
        m_waiting.pop_front();
    }
    tellIfSettled();
}

void NotificationServer::tellIfSettled() {
    if (m_waiting.empty() && m_unanswered == 0) {
        Q_EMIT settled();
    }
}

void NotificationServer::askWhatItCanDo() {
    ++m_question;
    const QDBusPendingCall question = m_bus.asyncCall(capabilitiesMessage(), noTimeout);
    m_isAsking = !hasFailedAtOnce(question);
    if (!m_isAsking) {
        m_waiting.clear(); // the bus has just gone; a watcher would hear nothing
        tellIfSettled();
        return;
    }
    auto* answer = new QDBusPendingCallWatcher(question, this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, number = m_question] {
        answer->deleteLater();
        if (number == m_question && m_isAsking) {
            m_isAsking = false;
            takeAnswer(answer->reply());
        }
    });
}

void NotificationServer::takeAnswer(const QDBusMessage& reply) {
    const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage;
    const bool isOfService = reply.service().startsWith(u':');
    if (!isAnswer && !isOfService) {
        m_waiting.clear(); // the bus has no such service
        tellIfSettled();
        return;
    }
    // A service that does not know the question knows neither markup nor actions.
    const QStringList said = isAnswer ? reply.arguments().value(0).toStringList() : QStringList();
    m_abilities = {.hasBodyMarkup = said.contains(QLatin1String("body-markup")),
                   .hasActions = said.contains(QLatin1String("actions"))};
    showWaiting();
}

void NotificationServer::show(const DesktopNotification& notification) {
    const QDBusMessage call =
        notifyMessage(notification, *m_abilities, localizedText("NotificationActionOpenLink"));
    const QDBusPendingCall question = m_bus.asyncCall(call, noTimeout);
    if (hasFailedAtOnce(question)) {
        return; // the bus has just gone
    }
    ++m_unanswered;
    auto* answer = new QDBusPendingCallWatcher(question, this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, answer, link = notification.link, owner = m_owners] {
                answer->deleteLater();
                const QDBusMessage reply = answer->reply();
                // Anything else than a number would stand for notification 0, which is none.
                if (!link.isEmpty() && reply.type() == QDBusMessage::ReplyMessage &&
                    reply.signature() == u"u") {
                    remember({reply.service(), reply.arguments().value(0).toUInt(), link, {}});
                }
                if (owner == m_owners) {
                    --m_unanswered;
                    showWaiting();
                }
            });
}

void NotificationServer::remember(const Shown& shown) {
    std::erase_if(m_links, [&shown](const Shown& other) {
        return other.service == shown.service && other.number == shown.number;
    });
    if (m_links.size() == mostLinks) {
        m_links.pop_front();
    }
    m_links.push_back(shown);
}

/// Every program on the bus hears of every notification, and anybody can send such a signal.
void NotificationServer::hear(const QDBusMessage& signal) {
    const QString member = signal.member();
    const QVariantList arguments = signal.arguments(); // its number, and what is told of it
    const auto shown = std::find_if(m_links.begin(), m_links.end(), [&](const Shown& one) {
        return one.service == signal.service() && QVariant(one.number) == arguments.value(0);
    });
    if (shown == m_links.end()) {
        return;
    }
    if (member == u"NotificationClosed") {
        m_links.erase(shown);
    } else if (member == u"ActivationToken") { // before the action that it belongs to
        shown->token = arguments.value(1).toString();
    } else if (member == u"ActionInvoked") {
        const QString token = std::exchange(shown->token, {}); // good for this click alone
        if (arguments.value(1) == QLatin1String("default")) {
            Q_EMIT linkChosen(QString(shown->link), token);
        }
    }
}

} // namespace korvale
