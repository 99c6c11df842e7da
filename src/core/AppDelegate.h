#pragma once

#include "agent_link/AgentNotifications.h"
#include "agent_link/ServiceChannel.h"
#include "agent_link/ServiceCommands.h"
#include "core/CommandLine.h"
#include "core/InfoDictionary.h"
#include "core/StatusPoll.h"
#include "core/StatusPublisher.h"
#include "core/base/AppState.h"
#include "model/AggregatedMessages.h"
#include "model/HostCache.h"
#include "model/RememberedLists.h"
#include "model/StatusWatch.h"
#include "platform/BusFileManager.h"
#include "platform/Clock.h"
#include "platform/IniUserDefaults.h"
#include "platform/PortalAppearance.h"
#include "platform/SpareMemory.h"
#include "platform/SystemBus.h"
#include "platform/XdgLinkOpener.h"
#include "shell/FolderScanChooser.h"
#include "shell/LegibilitySettings.h"
#include "shell/MainWindowController.h"
#include "shell/NotificationHistory.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusItemMenu.h"
#include "shell/StatusLine.h"
#include "shell/TrayIcon.h"
#include "shell/UserNotifications.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"
#include "tables/RememberedSelections.h"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace korvale {

/// What the process as a whole gives the controller.
struct AppDelegateContext {
    const CommandLine& commandLine;
    const InfoDictionary& info;
    const StartEnvironment& environment;  ///< that the program was started with
    std::function<void()> sleepOneSecond; ///< holds up the main thread; one-shot starts only
    std::function<void()> terminate;      ///< ends the event loop; applicationWillTerminate follows
};

/// The one application controller and composition root: owns all state, makes the parts, and starts
/// them in launch order. Needs the QApplication and the texts. Lives until the process ends. Main
/// thread.
class AppDelegate final : public QObject {
    Q_OBJECT
public:
    /// The state as it is before launch.
    explicit AppDelegate(AppDelegateContext context);
    ~AppDelegate() override;

    /// The start-up sequence; once, inside the event loop.
    void applicationDidFinishLaunching();
    /// Any thread.
    static void applicationWillTerminate();

    /// The session bus answers (or there is none: a connection that is not connected). Before the
    /// launch or at any time after it; once. Until then nothing touches that bus.
    void useSessionBus(const QDBusConnection& sessionBus);

    /// Makes com.korvale.ui.Status1 part of `object`; before the session bus knows it.
    void offerStatusOn(QObject& object) { m_statusPublisher.offerOn(object); }

    /// Somebody wants to see the program, or one of the actions of its desktop entry; another name
    /// is none. Nothing in no-UI mode.
    void activate(const QString& activationToken, const QString& action = {});

    /// The menu's exit.
    void exitApp();

    [[nodiscard]] const AppState& state() const { return m_state; }
    /// The status poll's; not active before the launch and in no-UI mode.
    [[nodiscard]] const QTimer& statusUpdateTimer() const { return m_statusUpdateTimer; }

private:
    [[nodiscard]] static AppState initialState();
    [[nodiscard]] AgentNotificationsParts agentNotificationsParts();
    [[nodiscard]] MainWindowContext windowContext();
    void connectParts();
    void followAgent();
    void setAgentIsAway(bool isAway);
    void setupStatusItemAndMenu();
    void finishLaunching();
    void agentIsHeard();
    void startStatusUpdates();
    void processAutoTest();
    void checkWantedUpdates();
    void showWhyNothingIsScanned();

    AppDelegateContext m_context;
    SystemClock m_clock;
    IniUserDefaults m_userDefaults;
    XdgLinkOpener m_linkOpener;
    BusFileManager m_fileManager{m_linkOpener};
    std::optional<QDBusConnection> m_sessionBus; ///< none while it is not known to answer
    bool m_isMenuBuilt = false;
    bool m_isUpdateCheckWanted = false; ///< once launched
    bool m_isChooserFromLauncher = false;

    AppState m_state;
    RememberedLists m_remembered;
    RememberedSelections m_selections;

    SettingsPortal m_settingsPortal;
    PortalAppearance m_appearance{m_settingsPortal};
    Resources m_resources;
    LegibilitySettings m_legibility{m_settingsPortal, m_resources};
    HostCache m_hostCache;
    StatusItem m_statusItem;
    StatusLine m_statusLine;
    StatusWatch m_statusWatch;
    StatusPublisher m_statusPublisher;
    UserNotifications m_notifications;
    NotificationHistory m_notificationHistory;

    SystemBus m_systemBus;
    ServiceChannel m_channel;
    ServiceCommands m_commands;

    StatusItemMenu m_menu;
    TrayIcon m_trayIcon;
    FolderScanChooser m_folderScanChooser;

    FileThreatsTable m_fileThreatsTableCtrl;
    ProcessThreatsTable m_memExploitTableCtrl;
    EventsTable m_eventsTableCtrl;
    ExternalDevicesTable m_externalDevicesTableCtrl;
    MainWindowController m_window;

    AggregatedMessages m_messages;
    AgentNotifications m_agentNotifications;
    StatusPoll m_statusPoll;
    SpareMemory m_spareMemory;
    unsigned m_ticks = 0; ///< of m_statusUpdateTimer
    QTimer m_statusUpdateTimer;
};

} // namespace korvale
