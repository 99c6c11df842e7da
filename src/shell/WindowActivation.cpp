#include "shell/WindowActivation.h"

#include "shell/X11Activation.h"

#include <QGuiApplication>
#include <QWidget>

namespace korvale {

bool readsTokenFromEnvironment(QStringView platform) {
    return platform.startsWith(QLatin1String("wayland"));
}

void bringToFront(QWidget& window, const QString& activationToken) {
    const bool hasToken = !activationToken.isEmpty();
    const bool isWayland = readsTokenFromEnvironment(QGuiApplication::platformName());
    if (hasToken && isWayland) {
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8()); // the toolkit takes it, once
    }
    // Without a token a Wayland compositor leaves a window where it is, behind others or on another
    // workspace. One that is mapped anew comes up.
    if (isWayland && qEnvironmentVariableIsEmpty("XDG_ACTIVATION_TOKEN") && window.isVisible() &&
        !window.isActiveWindow()) {
        window.hide();
    }
    const X11Activation x11(hasToken ? window.winId() : 0, activationToken.toUtf8());
    x11.announce();
    window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window.show();
    window.raise();
    window.activateWindow();
    x11.request();
}

} // namespace korvale
