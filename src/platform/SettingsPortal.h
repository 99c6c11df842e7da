#pragma once

#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QString>
#include <QVariant>

namespace korvale {

/// The desktop portal, as far as it tells settings of the user's (org.freedesktop.portal.Settings).
/// Everything is asynchronous. What others than the portal's owner send is not heard. Main thread.
class SettingsPortal final : public QObject {
    Q_OBJECT

public:
    explicit SettingsPortal(QObject* parent = nullptr);

    /// The bus to use from now on, for each new connection. One that is not connected is no portal.
    void start(const QDBusConnection& sessionBus);

    [[nodiscard]] bool isOnABus() const { return m_bus.isConnected(); }
    /// Asks for a setting, which starts a portal that is not running yet.
    [[nodiscard]] QDBusPendingCall read(const QString& group, const QString& key) const;

Q_SIGNALS:
    /// The owner of the portal's name is another, or known for the first time; empty: nobody.
    void ownerChanged(const QString& before, const QString& now);
    void settingChanged(const QString& group, const QString& key, const QVariant& value);

private Q_SLOTS:
    void hear(const QDBusMessage& message);

private:
    QDBusConnection m_bus{QString()};
    NameOwner m_owner;
};

} // namespace korvale
