#pragma once

#include "platform/Appearance.h"
#include "platform/PortalSetting.h"

namespace korvale {

/// The appearance that the desktop portal tells: the setting color-scheme of
/// org.freedesktop.appearance.
class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    /// `portal` outlives the object.
    explicit PortalAppearance(SettingsPortal& portal, QObject* parent = nullptr);

    /// Asks the portal and follows it from now on. To be called whenever the portal has started.
    void start() { m_scheme.start(); }

    [[nodiscard]] QVariant interfaceStyle() const override { return m_entry; }

private:
    void take();

    PortalSetting m_scheme;
    QVariant m_entry;
};

} // namespace korvale
