#pragma once

#include "platform/Appearance.h"
#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace korvale {

/// The appearance that the desktop portal tells (org.freedesktop.portal.Settings, the setting
/// color-scheme of org.freedesktop.appearance). Everything is asynchronous; without a session bus
/// or a portal there is no entry. What others than the portal's owner send is not heard.
class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QObject* parent = nullptr);

    /// Asks the portal and follows it from now on, for each new connection. A bus that is not
    /// connected is no portal.
    void start(const QDBusConnection& sessionBus);

    [[nodiscard]] QVariant interfaceStyle() const override { return m_entry; }

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void read();
    void takeAnswer(const QDBusMessage& reply);
    void ownerChanged(const QString& before, const QString& now);
    void dropEntry();
    void take(const QVariant& value);

    QDBusConnection m_bus{QString()};
    NameOwner m_portal;
    bool m_isAsking = false;
    bool m_hasAppeared = false; ///< since the last question
    int m_question = 0;         ///< number of the last one; the answers to earlier ones are stale
    QVariant m_entry;
};

} // namespace korvale
