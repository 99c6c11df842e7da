#include "shell/WindowActivation.h"

#include "shell/X11Activation.h"
#include "shell/X11Server.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <chrono>

namespace korvale {
namespace {

/// How long a compositor may take to act on a token.
constexpr std::chrono::milliseconds tokenLimit{1500};

/// Maps `window` anew unless it becomes active soon. A token may be out of date: some panels send
/// one with every choice in the menu, too, where nothing takes it.
void mapAnewUnlessActive(QWidget& window) {
    auto* patience = new QTimer(&window);
    patience->setSingleShot(true);
    QObject::connect(window.windowHandle(), &QWindow::activeChanged, patience,
                     &QObject::deleteLater);
    QObject::connect(patience, &QTimer::timeout, &window, [&window, patience] {
        patience->deleteLater();
        if (window.isVisible() && !window.isActiveWindow()) {
            window.hide();
            window.show();
        }
    });
    patience->start(tokenLimit);
}

/// The toolkit ties a window that gets the focus to the application, and leaves the tie when the
/// window is closed with the focus: opened a hundred times, it would tell of every change of focus
/// in it a hundred times.
void untieFromFormerFocus(const QWindow* window) {
    if (window != nullptr && window != QGuiApplication::focusWindow()) {
        QObject::disconnect(window, &QWindow::focusObjectChanged, qApp, nullptr);
    }
}

/// Of openings before this one.
void forgetFormerTitles() {
    if (const X11Server server; server.isThere()) {
        server.forgetAnsweredRequests();
    }
}

} // namespace

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
    const bool isBehind = isWayland && window.isVisible() && !window.isActiveWindow();
    const bool isTokenThere = !qEnvironmentVariableIsEmpty("XDG_ACTIVATION_TOKEN");
    if (isBehind && !isTokenThere) {
        window.hide();
    }
    const X11Activation x11(hasToken ? window.winId() : 0, activationToken.toUtf8());
    x11.announce();
    untieFromFormerFocus(window.windowHandle());
    forgetFormerTitles();
    window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window.show();
    window.raise();
    window.activateWindow();
    x11.request();
    if (isBehind && isTokenThere) {
        mapAnewUnlessActive(window);
    }
}

} // namespace korvale
