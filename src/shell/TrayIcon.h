#pragma once

#include "platform/NameOwner.h"
#include "shell/X11Tray.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace korvale {

class StatusItem;
class StatusItemMenu;
class TrayItemAdaptor;
class X11Dock;

/// Shows the status item and its menu in whatever tray the desktop has now: a StatusNotifierItem
/// where org.kde.StatusNotifierWatcher knows of a host, else the X11 tray. Trays may come, go and
/// change places at any time. Main thread; never waits for a tray or a bus.
///
/// Qt decides between the two kinds once per process, at the first QSystemTrayIcon and by that same
/// word of the watcher, and for good. So one is made only when a host is there, and the X11 tray
/// has an X11Dock, which needs no bus either.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    using AskForX11Tray = std::function<X11Tray()>;

    /// `item` and `menu` outlive the object. `askForX11` is asked `firstAsk` after start() or after
    /// a host has gone, and every `askAgain` as long as there is no host.
    TrayIcon(StatusItem& item, StatusItemMenu& menu, AskForX11Tray askForX11 = askForX11Tray,
             std::chrono::milliseconds firstAsk = std::chrono::seconds(2),
             std::chrono::milliseconds askAgain = std::chrono::seconds(8));
    ~TrayIcon() override;

    /// Looks for an X11 tray from now on. Once, after the menu is built.
    void start();
    /// Looks for a StatusNotifier host, too; after start(), for each new connection. A bus that is
    /// not connected has none.
    void useSessionBus(const QDBusConnection& sessionBus);

    /// Whether the StatusNotifierItem was made; without a host nobody may be showing it.
    [[nodiscard]] bool hasItem() const { return m_icon != nullptr; }
    [[nodiscard]] bool isDocked() const { return m_dock != nullptr; }

Q_SIGNALS:
    /// The user chose the item itself, not its menu.
    void activated();

private Q_SLOTS:
    void watcherSaid(const QDBusMessage& message);

private:
    void watcherChanged(const QString& before, const QString& now);
    void askWhetherThereIsAHost();
    void hostIs(bool isThere);
    [[nodiscard]] bool canMakeItem() const;
    void askForX11();
    void reportAvailability();
    void showItem();
    void showDock();
    void dockLost();
    void react(QSystemTrayIcon::ActivationReason reason);
    void choose();
    void updatePicture();
    void updateToolTip();

    StatusItem& m_item;
    StatusItemMenu& m_menu;
    AskForX11Tray m_askForX11Tray;
    std::chrono::milliseconds m_firstAsk;
    std::chrono::milliseconds m_askAgain;
    QDBusConnection m_bus{QString()};
    NameOwner m_watcher;
    int m_question = 0; ///< number of the last one; the answers to earlier ones are stale
    int m_connections = 0;
    QTimer m_x11Timer;
    QTimer m_pictureAgain;
    bool m_hasX11 = true; ///< as far as is known
    bool m_isHosted = false;
    bool m_hasMadeItem = false;
    std::unique_ptr<QSystemTrayIcon> m_icon;
    QPointer<TrayItemAdaptor> m_itemOnBus; ///< the icon's; null where the toolkit made none
    std::unique_ptr<X11Dock> m_dock;
};

} // namespace korvale
