#include "shell/Resources.h"

#include "shell/Pictures.h"

#include <array>

namespace korvale {

Resources::Resources(Appearance& appearance, IconSet iconSet, QObject* parent)
    : QObject(parent), m_appearance(appearance), m_iconSet(iconSet) {}

void Resources::initialize() {
    if (m_iconSet == IconSet::Vexa) {
        greenImage = pictureNamed("icon_20X20");
        yellowImage = pictureNamed("icon_yellow_20X20");
        redImage = pictureNamed("icon_red_20X20");
        greenImage_Inverted = pictureNamed("icon_20X20_Inverted");
        yellowImage_Inverted = pictureNamed("icon_yellow_20X20_Inverted");
        redImage_Inverted = pictureNamed("icon_red_20X20_Inverted");
        greenImage_TitleBar = greenImage;
        yellowImage_TitleBar = yellowImage;
        redImage_TitleBar = redImage;
        appIcon = pictureNamed("logo_sentrawardnet_clr@4x.png");
        m_programIcon = appIcon;
    } else {
        greenImage = pictureNamed("Agent-Icon-Normal");
        yellowImage = pictureNamed("Agent-Icon-Offline");
        redImage = pictureNamed("Agent-Icon-Threat");
        greenImage_Inverted = pictureNamed("Agent-Icon-Inverted-Normal");
        yellowImage_Inverted = pictureNamed("Agent-Icon-Inverted-Offline");
        redImage_Inverted = pictureNamed("Agent-Icon-Inverted-Threat");
        greenImage_TitleBar = pictureNamed("TitleBar-Green");
        redImage_TitleBar = pictureNamed("TitleBar-Red");
        yellowImage_TitleBar = pictureNamed("TitleBar-Yellow");
        appIcon = greenImage;
        m_programIcon = pictureNamed("com.korvale.ui"); // the one that is installed for menus
    }
    connectedImage = pictureNamed("NSStatusAvailable");
    notConnectedImage = pictureNamed("NSStatusUnavailable");
    partialAvailableImage = pictureNamed("NSStatusPartiallyAvailable");
    logoImage = pictureNamed("logo");

    darkModeChanged();
    connect(&m_appearance, &Appearance::interfaceThemeChanged, this, &Resources::darkModeChanged);
}

QIcon Resources::getImage(int index) const {
    struct Entry {
        QIcon Resources::*light;
        QIcon Resources::*dark;
    };
    using R = Resources;
    static constexpr std::array<Entry, 15> entries{{
        {&R::greenImage, &R::greenImage_Inverted},
        {&R::greenImage_Inverted, &R::greenImage_Inverted},
        {&R::yellowImage, &R::yellowImage_Inverted},
        {&R::yellowImage_Inverted, &R::yellowImage_Inverted},
        {&R::redImage, &R::redImage_Inverted},
        {&R::redImage_Inverted, &R::redImage_Inverted},
        {&R::connectedImage, &R::connectedImage},
        {&R::notConnectedImage, &R::notConnectedImage},
        {&R::partialAvailableImage, &R::partialAvailableImage},
        {nullptr, nullptr}, // a hole on purpose
        {&R::logoImage, &R::logoImage},
        {&R::appIcon, &R::appIcon},
        {&R::redImage_TitleBar, &R::redImage_TitleBar},
        {&R::greenImage_TitleBar, &R::greenImage_TitleBar},
        {&R::yellowImage_TitleBar, &R::yellowImage_TitleBar},
    }};
    if (index < 0 || index >= static_cast<int>(entries.size())) {
        return {};
    }
    const Entry& entry = entries[static_cast<std::size_t>(index)];
    const auto member = m_isDark ? entry.dark : entry.light;
    return member == nullptr ? QIcon() : this->*member;
}

void Resources::setHighContrast(bool isHigh) {
    if (isHigh != m_isHighContrast) {
        m_isHighContrast = isHigh;
        Q_EMIT darkModeFlipped();
    }
}

void Resources::darkModeChanged() {
    const QVariant style = m_appearance.interfaceStyle();
    const bool isDark = style.metaType() == QMetaType::fromType<QString>() &&
                        style.toString().compare(QLatin1String("dark"), Qt::CaseInsensitive) == 0;
    if (isDark != m_isDark) {
        m_isDark = isDark;
        Q_EMIT darkModeFlipped();
    }
}

} // namespace korvale
