#include "platform/PortalAppearance.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

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
QString appearanceGroup() {
    return QStringLiteral("org.freedesktop.appearance");
}
QString colorSchemeKey() {
    return QStringLiteral("color-scheme");
}

/// Read answers a variant inside a variant.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

void PortalAppearance::start(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    if (!m_bus.isConnected()) {
        return;
    }
    // No service is named here, since naming one asks the bus for its owner and waits: the owner is
    // compared in the slot. The slot takes the bare message, since QtDBus silently refuses one with
    // a QDBusVariant that nothing in the process has used before.
    m_bus.connect(QString(), portalPath(), settingsInterface(), QStringLiteral("SettingChanged"),
                  this, SLOT(settingChanged(QDBusMessage)));
    auto* watcher = new QDBusServiceWatcher(portalName(), m_bus,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
    read();
}

void PortalAppearance::read() {
    auto call = QDBusMessage::createMethodCall(portalName(), portalPath(), settingsInterface(),
                                               QStringLiteral("Read"));
    call << appearanceGroup() << colorSchemeKey();
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
            m_owner = reply.service();
            take(reply.arguments().constFirst());
        }
    });
}

void PortalAppearance::ownerChanged(const QString& newOwner) {
    if (newOwner == m_owner) {
        return;
    }
    m_owner = newOwner;
    // A portal that goes takes its entry along, but has no notification for that: the pictures stay
    // as they are until the next one answers.
    m_entry = QVariant();
    if (!newOwner.isEmpty()) {
        read();
    }
}

void PortalAppearance::settingChanged(const QDBusMessage& message) {
    const bool isFromPortal = !m_owner.isEmpty() && message.service() == m_owner;
    const QVariantList setting = message.arguments(); // group, key, value
    if (isFromPortal && setting.value(0) == appearanceGroup() &&
        setting.value(1) == colorSchemeKey() && setting.size() == 3) {
        take(setting.at(2));
    }
}

void PortalAppearance::take(const QVariant& value) {
    static constexpr uint preferDark = 1;
    m_entry =
        unwrapped(value) == QVariant(preferDark) ? QVariant(QStringLiteral("Dark")) : QVariant();
    Q_EMIT interfaceThemeChanged();
}

} // namespace korvale
