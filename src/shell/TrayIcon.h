#pragma once

#include "shell/X11Tray.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace korvale {

class StatusItem;
class StatusItemMenu;

/// Shows the status item and its menu in whatever tray the desktop has, as soon as it has one: a
/// StatusNotifierItem where org.kde.StatusNotifierWatcher knows of a host, else the X11 tray.
/// Main thread; never waits for a tray.
///
/// Qt decides between the two kinds once per process, at the first QSystemTrayIcon and by that same
/// word of the watcher, and for good: so none is made before one of them is really there.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    using AskForX11Tray = std::function<X11Tray()>;

    /// `item` and `menu` outlive the object. `askForX11` is asked `firstAsk` after start(), and
    /// every `askAgain` as long as there is no tray of either kind.
    TrayIcon(StatusItem& item, StatusItemMenu& menu, AskForX11Tray askForX11 = askForX11Tray,
             std::chrono::milliseconds firstAsk = std::chrono::seconds(2),
             std::chrono::milliseconds askAgain = std::chrono::seconds(10));

    /// Looks for a tray from now on. Once, after the menu is built. A bus that is not connected has
    /// no StatusNotifier host.
    void start(const QDBusConnection& sessionBus);

    [[nodiscard]] bool isShown() const { return m_icon != nullptr; }

Q_SIGNALS:
    /// The user chose the item itself, not its menu.
    void activated();

private Q_SLOTS:
    void hostsChanged(const QDBusMessage& message);

private:
    void watcherIs(const QString& owner);
    void askWhetherThereIsAHost();
    void hostIs(bool isThere);
    void askForX11();
    void showIcon();
    void react(QSystemTrayIcon::ActivationReason reason);
    void updatePicture();
    void updateToolTip();

    StatusItem& m_item;
    StatusItemMenu& m_menu;
    AskForX11Tray m_askForX11Tray;
    std::chrono::milliseconds m_firstAsk;
    std::chrono::milliseconds m_askAgain;
    QDBusConnection m_bus{QString()};
    QString m_watcher;       ///< unique name of the StatusNotifierWatcher; empty without one
    int m_openQuestions = 0; ///< which the watcher has not answered yet
    QTimer m_x11Timer;
    bool m_isX11 = false; ///< the icon is docked in the older kind of tray
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace korvale
