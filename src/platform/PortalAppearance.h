#pragma once

#include "platform/Appearance.h"
#include "platform/PortalSetting.h"

namespace korvale {

/// The appearance that the desktop portal tells: the setting color-scheme of
/// org.freedesktop.appearance.
class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QObject* parent = nullptr);

    /// Asks the portal and follows it from now on, for each new connection. A bus that is not
    /// connected is no portal.
    void start(const QDBusConnection& sessionBus) { m_scheme.start(sessionBus); }

    [[nodiscard]] QVariant interfaceStyle() const override { return m_entry; }

private:
    void take();

    PortalSetting m_scheme;
    QVariant m_entry;
};

} // namespace korvale
