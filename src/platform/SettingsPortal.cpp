#include "platform/SettingsPortal.h"

#include "platform/BusCalls.h"
#include "platform/BusSignals.h"
#include "platform/DesktopPortal.h"

namespace korvale {
namespace {

QString settingsInterface() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}

} // namespace

SettingsPortal::SettingsPortal(QObject* parent) : QObject(parent), m_owner(portalName()) {
    connect(&m_owner, &NameOwner::changed, this, &SettingsPortal::ownerChanged);
}

void SettingsPortal::start(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    if (!m_bus.isConnected()) {
        m_owner.forget();
        return;
    }
    // The slot takes the bare message, since QtDBus silently refuses one with a QDBusVariant that
    // nothing in the process has used before.
    hearSignals(m_bus, {portalPath(), settingsInterface(), QStringLiteral("SettingChanged"), {}},
                this, SLOT(hear(QDBusMessage)));
    m_owner.follow(m_bus);
}

QDBusPendingCall SettingsPortal::read(const QString& group, const QString& key) const {
    auto call = QDBusMessage::createMethodCall(portalName(), portalPath(), settingsInterface(),
                                               QStringLiteral("Read"));
    call << group << key;
    return m_bus.asyncCall(call, noTimeout);
}

void SettingsPortal::hear(const QDBusMessage& message) {
    const QVariantList setting = message.arguments(); // group, key, value
    if (m_owner.compare(message.service()) == NameOwner::Is::Owner && setting.size() == 3) {
        Q_EMIT settingChanged(setting.at(0).toString(), setting.at(1).toString(), setting.at(2));
    }
}

} // namespace korvale
