#include "shell/TrayIcon.h"

#include "platform/SafeText.h"
#include "shell/StatusItem.h"
#include "shell/StatusItemMenu.h"

#include <QCursor>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace korvale {
namespace {

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
      m_askAgain(askAgain) {
    m_x11Timer.setSingleShot(true);
    connect(&m_x11Timer, &QTimer::timeout, this, &TrayIcon::askForX11);
    connect(&item, &StatusItem::shownPictureSet, this, &TrayIcon::updatePicture);
    connect(&item, &StatusItem::toolTipChanged, this, &TrayIcon::updateToolTip);
}

void TrayIcon::start(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
    m_x11Timer.start(m_firstAsk);
    if (!m_bus.isConnected()) {
        m_item.setTrayAvailable(false);
        return;
    }
    auto* names = new QDBusServiceWatcher(watcherName(), m_bus,
                                          QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(names, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { watcherIs(owner); });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        // Without a service, since naming one makes Qt ask for its owner and wait.
        m_bus.connect(QString(), watcherPath(), watcherName(), QLatin1String(signal), this,
                      SLOT(hostsChanged(QDBusMessage)));
    }
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
    call << watcherName();
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusMessage reply = answer->reply();
        watcherIs(reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toString()
                                                             : QString());
    });
}

void TrayIcon::watcherIs(const QString& owner) {
    if (m_isX11) {
        return; // the choice is made, see above
    }
    m_watcher = owner;
    if (owner.isEmpty()) {
        hostIs(false);
        return;
    }
    askWhetherThereIsAHost();
}

/// A watcher without a host (a desktop's background service in another session) shows nothing.
void TrayIcon::askWhetherThereIsAHost() {
    auto call = QDBusMessage::createMethodCall(watcherName(), watcherPath(),
                                               QStringLiteral("org.freedesktop.DBus.Properties"),
                                               QStringLiteral("Get"));
    call << watcherName() << QStringLiteral("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    // Without a time-out, since it matters whether the watcher has answered at all.
    auto* answer =
        new QDBusPendingCallWatcher(m_bus.asyncCall(call, std::numeric_limits<int>::max()), this);
    ++m_openQuestions;
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        --m_openQuestions;
        const QDBusMessage reply = answer->reply();
        const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
        if (!m_isX11) {
            hostIs(!m_watcher.isEmpty() && value.toBool());
        }
    });
}

void TrayIcon::hostsChanged(const QDBusMessage& message) {
    if (!m_isX11 && !m_watcher.isEmpty() && message.service() == m_watcher) {
        askWhetherThereIsAHost();
    }
}

void TrayIcon::hostIs(bool isThere) {
    m_menu.setRenderer(isThere ? MenuRenderer::Panel : MenuRenderer::Toolkit);
    if (!isThere) {
        m_item.setMenuOpen(false); // whoever had it open never says that it closed
    }
    m_item.setTrayAvailable(isThere);
    if (isThere && !m_icon) {
        m_x11Timer.stop();
        showIcon();
    }
}

void TrayIcon::askForX11() {
    if (m_openQuestions > 0) {
        // The toolkit would ask this silent watcher, too, and wait for its answer.
        m_item.setTrayAvailable(false);
        m_x11Timer.start(m_askAgain);
        return;
    }
    switch (m_askForX11Tray()) {
    case X11Tray::Present:
        m_isX11 = true;
        showIcon();
        m_item.setTrayAvailable(true);
        break;
    case X11Tray::Absent:
        m_x11Timer.start(m_askAgain);
        break;
    case X11Tray::NoX11:
        break;
    }
}

void TrayIcon::showIcon() {
    m_icon = std::make_unique<QSystemTrayIcon>();
    updatePicture();
    updateToolTip();
    m_icon->setContextMenu(m_menu.menu());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &TrayIcon::react);
    m_icon->show();
}

void TrayIcon::react(QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger && !m_menu.isNoUI()) {
        Q_EMIT activated();
    } else if (reason == QSystemTrayIcon::Context && !m_isX11) {
        // A panel that does not draw menus itself; in the X11 tray the toolkit has opened it.
        m_menu.popUp(QCursor::pos());
    }
}

void TrayIcon::updatePicture() {
    if (m_icon) {
        m_icon->setIcon(m_item.shownPicture());
    }
}

void TrayIcon::updateToolTip() {
    if (m_icon) {
        m_icon->setToolTip(trayToolTip(m_item.toolTip()));
    }
}

} // namespace korvale
