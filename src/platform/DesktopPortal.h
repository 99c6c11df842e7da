#pragma once

#include <QString>

namespace korvale {

/// Where the desktop portal is on the session bus (https://flatpak.github.io/xdg-desktop-portal).
inline QString portalName() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}
inline QString portalPath() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

} // namespace korvale
