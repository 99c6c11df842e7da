#pragma once

#include "platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace korvale {

/// The appearance that the desktop portal tells (org.freedesktop.portal.Settings, the setting
/// color-scheme of org.freedesktop.appearance). Everything is asynchronous; without a session bus
/// or a portal there is no entry. What others than the portal's owner send is not heard.
class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    using Appearance::Appearance;

    /// Asks the portal and follows it from now on. Once; a bus that is not connected is no portal.
    void start(const QDBusConnection& sessionBus);

    [[nodiscard]] QVariant interfaceStyle() const override { return m_entry; }

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void read();
    void ownerChanged(const QString& newOwner);
    void take(const QVariant& value);

    QDBusConnection m_bus{QString()};
    QString m_owner; ///< unique name of the portal; empty while unknown
    QVariant m_entry;
};

} // namespace korvale
