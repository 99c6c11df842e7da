#include "platform/PortalSetting.h"

#include "platform/BusCalls.h"
#include "platform/BusSignals.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace korvale {
namespace {

QString portalName() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}
QString portalPath() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}
QString settingsInterface() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}

/// Read answers a variant inside a variant.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalSetting::PortalSetting(QString group, QString key, QObject* parent)
    : QObject(parent), m_group(std::move(group)), m_key(std::move(key)), m_portal(portalName()) {
    connect(&m_portal, &NameOwner::changed, this, &PortalSetting::ownerChanged);
}

void PortalSetting::start(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    drop();
    if (!m_bus.isConnected()) {
        m_portal.forget();
        return;
    }
    // The slot takes the bare message, since QtDBus silently refuses one with a QDBusVariant that
    // nothing in the process has used before.
    hearSignals(m_bus, {portalPath(), settingsInterface(), QStringLiteral("SettingChanged"), {}},
                this, SLOT(settingChanged(QDBusMessage)));
    m_portal.follow(m_bus);
    read(); // which starts a portal that is not running yet
}

void PortalSetting::read() {
    auto call = QDBusMessage::createMethodCall(portalName(), portalPath(), settingsInterface(),
                                               QStringLiteral("Read"));
    call << m_group << m_key;
    m_hasAppeared = false;
    ++m_question;
    const QDBusPendingCall question = m_bus.asyncCall(call, noTimeout);
    m_isAsking = !hasFailedAtOnce(question);
    if (!m_isAsking) {
        return; // the bus has just gone
    }
    auto* watcher = new QDBusPendingCallWatcher(question, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, number = m_question] {
                watcher->deleteLater();
                if (number == m_question) {
                    takeAnswer(watcher->reply());
                }
            });
}

void PortalSetting::takeAnswer(const QDBusMessage& reply) {
    m_isAsking = false;
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        take(reply.arguments().constFirst());
    } else if (m_hasAppeared && !reply.service().startsWith(u':')) {
        read(); // nobody was there when the bus was asked, but somebody is now
    }
}

void PortalSetting::ownerChanged(const QString& before, const QString& now) {
    if (!before.isEmpty()) {
        ++m_question; // whoever was asked is gone
        m_isAsking = false;
        drop();
    }
    if (now.isEmpty()) {
        return;
    }
    if (m_isAsking) {
        m_hasAppeared = true; // and answers, unless the bus has refused in its place before
    } else {
        read();
    }
}

/// A portal that goes takes its value along.
void PortalSetting::drop() {
    if (m_value.isValid()) {
        m_value = QVariant();
        Q_EMIT changed();
    }
}

void PortalSetting::settingChanged(const QDBusMessage& message) {
    const bool isFromPortal = m_portal.compare(message.service()) == NameOwner::Is::Owner;
    const QVariantList setting = message.arguments(); // group, key, value
    if (isFromPortal && setting.value(0) == m_group && setting.value(1) == m_key &&
        setting.size() == 3) {
        take(setting.at(2));
    }
}

void PortalSetting::take(const QVariant& value) {
    m_value = unwrapped(value);
    Q_EMIT changed();
}

} // namespace korvale
