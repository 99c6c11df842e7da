#include "platform/PortalAppearance.h"

namespace korvale {

PortalAppearance::PortalAppearance(SettingsPortal& portal, QObject* parent)
    : Appearance(parent),
      m_scheme(portal, QStringLiteral("org.freedesktop.appearance"),
               QStringLiteral("color-scheme")) {
    connect(&m_scheme, &PortalSetting::changed, this, &PortalAppearance::take);
}

void PortalAppearance::take() {
    static constexpr uint preferDark = 1;
    const bool hadEntry = m_entry.isValid();
    m_entry =
        m_scheme.value() == QVariant(preferDark) ? QVariant(QStringLiteral("Dark")) : QVariant();
    if (m_scheme.value().isValid() || hadEntry) {
        Q_EMIT interfaceThemeChanged(); // a portal that goes with nothing to take along is no news
    }
}

} // namespace korvale
