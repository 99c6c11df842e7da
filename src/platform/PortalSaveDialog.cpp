#include "platform/PortalSaveDialog.h"

#include "platform/BusSignals.h"
#include "platform/DesktopPortal.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <utility>

namespace korvale {
namespace {

constexpr int answerLimitMs = 5000;
constexpr std::size_t mostEarly = 100; // anybody can send them

QString requestInterface() {
    return QStringLiteral("org.freedesktop.portal.Request");
}

/// Of the places that were chosen the first. The list may be none at all.
QUrl firstPlace(const QVariant& results) {
    const auto map = qdbus_cast<QVariantMap>(results);
    const QStringList places = map.value(QStringLiteral("uris")).toStringList();
    return places.isEmpty() ? QUrl() : QUrl(places.constFirst());
}

} // namespace

PortalSaveDialog::PortalSaveDialog(const QDBusConnection& sessionBus, QObject* parent)
    : QObject(parent), m_bus(sessionBus), m_owner(portalName()) {
    connect(&m_owner, &NameOwner::changed, this, [this](const QString& before) {
        if (m_isOpen && !before.isEmpty() && before == m_portal) {
            m_isOpen = false;
            Q_EMIT decided({});
        }
    });
}

PortalSaveDialog::~PortalSaveDialog() {
    close();
}

void PortalSaveDialog::ask(const QString& parentWindow, const QString& title, const QString& name) {
    static int number = 0;
    const QString token = QStringLiteral("korvale%1").arg(++number);
    // Portals name the request so: its signal can be asked for before the request is made.
    m_request = QStringLiteral("%1/request/%2/%3")
                    .arg(portalPath(), m_bus.baseService().mid(1).replace(u'.', u'_'), token);
    hearSignals(m_bus, {m_request, requestInterface(), QStringLiteral("Response"), {}}, this,
                SLOT(responded(QDBusMessage)));
    m_owner.follow(m_bus);
    auto call = QDBusMessage::createMethodCall(portalName(), portalPath(),
                                               QStringLiteral("org.freedesktop.portal.FileChooser"),
                                               QStringLiteral("SaveFile"));
    call << parentWindow << title
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("current_name"), name}};
    m_isOpen = true;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, answerLimitMs), this);
    const auto take = [this, watcher] {
        watcher->deleteLater();
        takeReply(watcher->reply());
    };
    if (hasFailedAtOnce(*watcher)) {
        QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
    } else {
        connect(watcher, &QDBusPendingCallWatcher::finished, this, take);
    }
}

void PortalSaveDialog::takeReply(const QDBusMessage& reply) {
    const auto request = reply.type() == QDBusMessage::ReplyMessage
                             ? reply.arguments().value(0).value<QDBusObjectPath>().path()
                             : QString();
    if (request != m_request) {
        close(); // it may be slow only
        Q_EMIT missing();
        return;
    }
    m_portal = reply.service();
    for (const QDBusMessage& message : std::exchange(m_early, {})) {
        responded(message);
    }
}

/// What the portal sends behind its reply may be delivered before it, when this program is held up
/// between the question and the look for its answer.
void PortalSaveDialog::responded(const QDBusMessage& message) {
    if (m_portal.isEmpty() && m_early.size() < mostEarly) {
        m_early.push_back(message);
    }
    if (!m_isOpen || m_portal.isEmpty() || message.service() != m_portal) {
        return;
    }
    m_isOpen = false;
    const bool isChosen = message.arguments().value(0).toUInt() == 0;
    Q_EMIT decided(isChosen ? firstPlace(message.arguments().value(1)) : QUrl());
}

void PortalSaveDialog::close() {
    if (std::exchange(m_isOpen, false)) {
        auto call = QDBusMessage::createMethodCall(portalName(), m_request, requestInterface(),
                                                   QStringLiteral("Close"));
        call.setAutoStartService(false);
        m_bus.send(call);
    }
}

} // namespace korvale
