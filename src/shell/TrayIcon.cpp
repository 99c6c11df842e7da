#include "shell/TrayIcon.h"

#include "platform/BusSignals.h"
#include "platform/SafeText.h"
#include "shell/StatusItem.h"
#include "shell/StatusItemMenu.h"
#include "shell/TrayItemAdaptor.h"
#include "shell/X11Dock.h"

#include <QCursor>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace korvale {
namespace {

/// Some hosts lose the pictures of the items they find when they start.
constexpr std::chrono::milliseconds pictureAgainAfter = std::chrono::seconds(1);

QString watcherName() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}
QString watcherPath() {
    return QStringLiteral("/StatusNotifierWatcher");
}

} // namespace

TrayIcon::TrayIcon(StatusItem& item, StatusItemMenu& menu, AskForX11Tray askForX11,
                   std::chrono::milliseconds firstAsk, std::chrono::milliseconds askAgain)
    : m_item(item),
      m_menu(menu),
      m_askForX11Tray(std::move(askForX11)),
      m_firstAsk(firstAsk),
      m_askAgain(askAgain),
      m_watcher(watcherName()) {
    m_x11Timer.setSingleShot(true);
    connect(&m_x11Timer, &QTimer::timeout, this, &TrayIcon::askForX11);
    m_pictureAgain.setSingleShot(true);
    m_pictureAgain.setInterval(pictureAgainAfter);
    connect(&m_pictureAgain, &QTimer::timeout, this, &TrayIcon::updatePicture);
    connect(&m_watcher, &NameOwner::changed, this, &TrayIcon::watcherChanged);
    connect(&item, &StatusItem::shownPictureSet, this, &TrayIcon::updatePicture);
    connect(&item, &StatusItem::toolTipChanged, this, &TrayIcon::updateToolTip);
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::start() {
    m_x11Timer.start(m_firstAsk);
}

void TrayIcon::useSessionBus(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    m_icon.reset(); // it lives on the connection of its own that it made to the former bus
    m_watcher.follow(m_bus);
    if (!m_bus.isConnected()) {
        hostIs(false);
        return;
    }
    ++m_connections;
    // One rule for all it says, which is little.
    hearSignals(m_bus, {watcherPath(), watcherName(), {}, {}}, this,
                SLOT(watcherSaid(QDBusMessage)));
}

void TrayIcon::watcherChanged(const QString& /*before*/, const QString& now) {
    ++m_question; // whoever was asked is no longer the one that counts
    if (now.isEmpty()) {
        hostIs(false);
    } else {
        askWhetherThereIsAHost();
    }
}

/// A watcher without a host (a desktop's background service in another session) shows nothing.
void TrayIcon::askWhetherThereIsAHost() {
    auto call = QDBusMessage::createMethodCall(watcherName(), watcherPath(),
                                               QStringLiteral("org.freedesktop.DBus.Properties"),
                                               QStringLiteral("Get"));
    call << watcherName() << QStringLiteral("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call, noTimeout), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, answer, number = ++m_question] {
                answer->deleteLater();
                if (number == m_question) {
                    const QVariant value = answer->reply().arguments().value(0);
                    hostIs(value.value<QDBusVariant>().variant().toBool());
                }
            });
}

void TrayIcon::watcherSaid(const QDBusMessage& message) {
    if (message.member().startsWith(QLatin1String("StatusNotifierHost")) &&
        m_watcher.compare(message.service()) == NameOwner::Is::Owner) {
        askWhetherThereIsAHost();
    }
}

void TrayIcon::hostIs(bool isThere) {
    m_isHosted = isThere && canMakeItem();
    if (m_isHosted) {
        m_x11Timer.stop();
        m_dock.reset();
        showItem();
        m_pictureAgain.start();
    } else {
        m_item.setMenuOpen(false); // whoever had it open never says that it closed
        if (m_hasX11 && !m_x11Timer.isActive()) {
            m_x11Timer.start(m_firstAsk);
        }
    }
    m_menu.setRenderer(m_isHosted ? MenuRenderer::Panel : MenuRenderer::Toolkit);
    reportAvailability();
}

/// The toolkit decides at its first item, and by the first session bus of this process.
bool TrayIcon::canMakeItem() const {
    return m_hasMadeItem || m_connections == 1;
}

void TrayIcon::askForX11() {
    const X11Tray tray = m_askForX11Tray();
    m_hasX11 = tray != X11Tray::NoX11;
    if (tray != X11Tray::Present) {
        m_dock.reset();
    } else if (!m_dock) {
        showDock();
    }
    if (m_hasX11) {
        m_x11Timer.start(m_askAgain); // also to see whether the tray is still there
    }
    reportAvailability();
}

void TrayIcon::reportAvailability() {
    m_item.setTrayAvailable(m_isHosted || m_dock);
}

void TrayIcon::showItem() {
    if (m_icon) {
        return;
    }
    m_hasMadeItem = true;
    m_icon = std::make_unique<QSystemTrayIcon>();
    updatePicture();
    updateToolTip();
    m_icon->setContextMenu(m_menu.menu());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &TrayIcon::react);
    m_icon->show();
    m_itemOnBus = TrayItemAdaptor::takeOverNewest();
    if (m_itemOnBus) {
        m_itemOnBus->setPicture(m_item.shownPicture());
        m_itemOnBus->setToolTip(trayToolTip(m_item.toolTip()));
    }
}

void TrayIcon::showDock() {
    m_dock = std::make_unique<X11Dock>();
    updatePicture();
    updateToolTip();
    connect(m_dock.get(), &X11Dock::chosen, this, &TrayIcon::choose);
    connect(m_dock.get(), &X11Dock::menuWanted, this,
            [this](const QPoint& place) { m_menu.menu()->popup(place); });
    connect(m_dock.get(), &X11Dock::lost, this, &TrayIcon::dockLost, Qt::QueuedConnection);
    m_dock->dock();
}

void TrayIcon::dockLost() {
    m_dock.reset();
    askForX11(); // the tray may have let go of it alone, or another may be there already
}

void TrayIcon::react(QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger) {
        choose();
    } else if (reason == QSystemTrayIcon::Context) {
        m_menu.popUp(QCursor::pos()); // a panel that does not draw menus itself
    }
}

void TrayIcon::choose() {
    if (!m_menu.isNoUI()) {
        Q_EMIT activated();
    }
}

void TrayIcon::updatePicture() {
    if (m_icon) {
        m_icon->setIcon(m_item.shownPicture());
    }
    if (m_itemOnBus) {
        m_itemOnBus->setPicture(m_item.shownPicture());
    }
    if (m_dock) {
        m_dock->setPicture(m_item.shownPicture());
    }
}

void TrayIcon::updateToolTip() {
    const QString text = trayToolTip(m_item.toolTip());
    if (m_icon) {
        m_icon->setToolTip(text);
    }
    if (m_itemOnBus) {
        m_itemOnBus->setToolTip(text);
    }
    if (m_dock) {
        m_dock->setToolTip(text);
    }
}

} // namespace korvale
