#include "shell/LegibilitySettings.h"

#include "shell/Resources.h"

#include <QApplication>

namespace korvale {

double textScaleOf(const QVariant& setting) {
    static constexpr double least = 0.5;
    static constexpr double most = 3.0;
    const bool isNumber = setting.metaType() == QMetaType::fromType<double>();
    const double scale = isNumber ? setting.toDouble() : 1.0;
    return scale >= least && scale <= most ? scale : 1.0; // not a number is neither
}

LegibilitySettings::LegibilitySettings(SettingsPortal& portal, Resources& resources,
                                       QObject* parent)
    : QObject(parent),
      m_resources(resources),
      m_contrast(portal, QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast")),
      m_textScale(portal, QStringLiteral("org.gnome.desktop.interface"),
                  QStringLiteral("text-scaling-factor")) {
    connect(&m_contrast, &PortalSetting::changed, this, &LegibilitySettings::contrastChanged);
    connect(&m_textScale, &PortalSetting::changed, this, &LegibilitySettings::textScaleChanged);
}

void LegibilitySettings::start() {
    m_contrast.start();
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        m_textScale.start();
    }
}

void LegibilitySettings::contrastChanged() {
    static constexpr uint higher = 1;
    m_resources.setHighContrast(m_contrast.value() == QVariant(higher));
}

void LegibilitySettings::textScaleChanged() {
    const double scale = textScaleOf(m_textScale.value());
    if (scale == 1.0 && !m_plainFont) {
        return; // fonts are not touched before somebody wants another
    }
    if (!m_plainFont) {
        m_plainFont = QApplication::font();
    }
    QFont font = *m_plainFont;
    font.setPointSizeF(font.pointSizeF() * scale);
    QApplication::setFont(font);
}

} // namespace korvale
