#include "shell/WindowActivation.h"

#include <QWidget>

namespace korvale {

void bringToFront(QWidget& window, const QString& activationToken) {
    if (!activationToken.isEmpty()) {
        // Qt's Wayland platform takes the token of xdg-activation from here, once.
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    }
    window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace korvale
