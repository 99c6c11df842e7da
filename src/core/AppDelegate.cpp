#include "core/AppDelegate.h"

#include "core/AdvancedMode.h"
#include "core/ProcessValues.h"
#include "core/base/Logging.h"
#include "model/Values.h"
#include "platform/HostIdentity.h"
#include "platform/NameOwner.h"
#include "platform/Texts.h"
#include "platform/XdgFolders.h"

#include <QGuiApplication>

#include <chrono>
#include <utility>

namespace korvale {
namespace {

constexpr std::chrono::milliseconds longestWaitForAgent{250};
constexpr int ticksBetweenLooks = 4; ///< at spare memory, which need not go back at once

} // namespace

AppDelegate::AppDelegate(AppDelegateContext context)
    : m_context(std::move(context)),
      m_linkOpener(m_context.environment),
      m_state(initialState()),
      m_resources(m_appearance,
                  m_context.info.usesVexaAppIcon() ? IconSet::Vexa : IconSet::Standard),
      m_hostCache(m_userDefaults),
      m_statusItem(m_state, m_resources),
      m_statusLine(m_state, m_clock),
      m_statusWatch(m_state),
      m_statusPublisher(m_statusWatch),
      m_notifications(m_state, m_hostCache, m_resources, m_linkOpener),
      m_notificationHistory(NotificationHistory::userPath(), m_clock),
      m_channel(m_systemBus, m_notifications),
      m_commands(m_state, m_channel, m_statusLine, m_statusItem,
                 {processValues().automationMode, m_context.sleepOneSecond, m_context.terminate,
                  [this] { return m_clock.now(); }}),
      m_menu(m_state, m_hostCache, m_statusItem, m_commands),
      m_trayIcon(m_statusItem, m_menu),
      m_folderScanChooser(m_resources, m_commands),
      m_fileThreatsTableCtrl(m_selections),
      m_memExploitTableCtrl(m_selections),
      m_eventsTableCtrl(m_selections),
      m_externalDevicesTableCtrl(m_selections),
      m_window(windowContext()),
      m_messages(m_state, m_hostCache, m_remembered,
                 {m_fileThreatsTableCtrl, m_memExploitTableCtrl, m_eventsTableCtrl,
                  m_externalDevicesTableCtrl},
                 m_statusLine, m_notifications, m_window),
      m_agentNotifications(agentNotificationsParts()),
      m_statusPoll(m_state, {m_clock, m_hostCache, m_commands, m_statusLine, m_window, m_menu}) {
    m_state.lastAgentReportTime = m_clock.now();
    m_channel.setDriverQuery([this] { m_commands.checkDriverConnection(); });
    connectParts();
    m_statusUpdateTimer.setTimerType(Qt::PreciseTimer);
    m_statusUpdateTimer.setInterval(statusPollPeriod);
    connect(&m_statusUpdateTimer, &QTimer::timeout, this, [this] {
        m_statusPoll.timerFired();
        m_statusWatch.look(); // an answer, or silence, changes the state without a word
        if (m_ticks++ % ticksBetweenLooks == 0) {
            m_spareMemory.giveBack();
        }
    });
    setSharedController(&m_agentNotifications);
}

void AppDelegate::connectParts() {
    connect(&m_menu, &StatusItemMenu::aboutToBeDrawn, &m_window,
            &MainWindowController::dressStatusMenu);
    followAgent();
    connect(&m_statusLine, &StatusLine::changed, &m_statusWatch, &StatusWatch::look);
    connect(&m_statusItem, &StatusItem::shownPictureSet, &m_statusWatch, &StatusWatch::look,
            Qt::QueuedConnection); // the colour is stored after its pictures are set
    connect(&m_trayIcon, &TrayIcon::activated, this, [this] { activate({}); });
    connect(&m_menu, &StatusItemMenu::showDetails, &m_window, [this] { m_window.showDetails(); });
    connect(&m_menu, &StatusItemMenu::aboutApp, &m_window, [this] { m_window.aboutApp(); });
    connect(&m_menu, &StatusItemMenu::scanSpecificFolder, &m_folderScanChooser, [this] {
        m_isChooserFromLauncher = false;
        m_folderScanChooser.scanSpecificFolder();
    });
    connect(&m_folderScanChooser, &FolderScanChooser::scanWasAsked, this,
            &AppDelegate::showWhyNothingIsScanned);
    connect(&m_menu, &StatusItemMenu::exitApp, this, &AppDelegate::exitApp);
    if (!processValues().automationMode && !processValues().noUIMode) {
        // Elsewhere nobody could look at them, or clear them.
        connect(&m_notifications, &UserNotifications::told, &m_notificationHistory,
                &NotificationHistory::add);
    }
    connect(&m_window, &MainWindowController::becameMain, this,
            [this] { m_messages.parseTimerAggregatedMessage(); });
}

/// Without an agent nobody knows whether something would have been found.
void AppDelegate::followAgent() {
    connect(&m_systemBus, &SystemBus::lost, this, [this] { setAgentIsAway(true); });
    connect(
        &m_channel.owner(), &NameOwner::changed, this,
        [this](const QString& /*before*/, const QString& now) { setAgentIsAway(now.isEmpty()); });
}

void AppDelegate::setAgentIsAway(bool isAway) {
    m_state.agentIsAway = isAway;
    m_window.showWhyTablesAreEmpty();
    m_statusWatch.look();
}

AppDelegate::~AppDelegate() {
    setSharedController(nullptr);
}

AppState AppDelegate::initialState() {
    AppState state;
    state.customName = hostDisplayName();
    state.policyName = localizedText("DefaultPolicyName");
    state.policyMode = localizedText("DefaultPolicyMode");
    return state;
}

AgentNotificationsParts AppDelegate::agentNotificationsParts() {
    return {.state = m_state,
            .clock = m_clock,
            .status = m_statusLine,
            .icon = m_statusItem,
            .notifications = m_notifications,
            .readFile = [this](const QString& file) { return m_hostCache.readFile(file); },
            .connectToService = [this] { m_channel.connectToService(); },
            .parseTimerAggregatedMessage = [this] { m_messages.parseTimerAggregatedMessage(); }};
}

MainWindowContext AppDelegate::windowContext() {
    return {.state = m_state,
            .resources = m_resources,
            .statusItem = m_statusItem,
            .statusLine = m_statusLine,
            .statusWatch = m_statusWatch,
            .iconDisplay = m_statusItem,
            .tables = {m_fileThreatsTableCtrl, m_memExploitTableCtrl, m_eventsTableCtrl,
                       m_externalDevicesTableCtrl},
            .linkOpener = m_linkOpener,
            .notifications = m_notificationHistory,
            .fileManager = m_fileManager,
            .statusMenu = m_menu.menu(),
            .displayName = QGuiApplication::applicationDisplayName(),
            .shortVersion =
                cellText(m_context.info["CFBundleShortVersionString"]).value_or(QString()),
            .placementFile = WindowMemory::userPath(),
            .sessionBus = &m_sessionBus};
}

/// The window, its delegates and its observers come when it is first shown; tables keep their rows
/// from here on.
void AppDelegate::applicationDidFinishLaunching() {
    m_resources.initialize();
    m_state.allowCheckForPolicyUpdate = m_context.info.allowsCheckForPolicyUpdate();
    setupStatusItemAndMenu();
    m_statusPublisher.start();
    m_agentNotifications.observe(m_systemBus, m_channel.owner());
    m_systemBus.start();
    m_channel.connectToService();
    if (processValues().automationMode) {
        finishLaunching();
        return;
    }
    // The first read follows once the agent is heard, so that nothing it says falls in between; but
    // no bus, and none that hangs, keeps the user waiting for it.
    connect(&m_channel, &ServiceChannel::hearing, this, &AppDelegate::agentIsHeard);
    connect(&m_systemBus, &SystemBus::firstAttemptFailed, this, &AppDelegate::finishLaunching);
    QTimer::singleShot(longestWaitForAgent, this, &AppDelegate::finishLaunching);
}

void AppDelegate::finishLaunching() {
    if (!m_state.justStart) {
        return;
    }
    if (!processValues().noUIMode) {
        startStatusUpdates();
    }
    m_state.justStart = false;
    processAutoTest();
    checkWantedUpdates();
}

void AppDelegate::agentIsHeard() {
    if (m_state.justStart) {
        finishLaunching();
        return;
    }
    // What it said while nobody listened is lost, and so is what its masks named.
    m_commands.checkDriverConnection();
    if (!processValues().noUIMode) {
        m_messages.parseEverything();
    }
}

void AppDelegate::setupStatusItemAndMenu() {
    m_menu.setupStatusItemAndMenu(
        {.noUI = processValues().noUIMode,
         .advanced = isAdvanceMode(m_context.commandLine, applicationSupportFolder())});
    m_isMenuBuilt = true;
    m_trayIcon.start();
    if (m_sessionBus) {
        m_trayIcon.useSessionBus(*m_sessionBus);
    }
}

void AppDelegate::startStatusUpdates() {
    m_messages.parseTimerAggregatedMessage();
    m_state.lastStatusReportTime = m_clock.now();
    m_statusUpdateTimer.start();
    m_statusLine.updateStatusMessage(m_state.statusState);
}

void AppDelegate::useSessionBus(const QDBusConnection& sessionBus) {
    m_sessionBus = sessionBus;
    m_statusPublisher.useSessionBus(sessionBus);
    m_fileManager.useSessionBus(sessionBus);
    m_settingsPortal.start(sessionBus);
    m_appearance.start();
    m_legibility.start();
    m_notifications.start(sessionBus);
    if (m_isMenuBuilt) {
        m_trayIcon.useSessionBus(sessionBus);
    }
}

void AppDelegate::activate(const QString& activationToken, const QString& action) {
    if (processValues().noUIMode) {
        return;
    }
    if (action == scanFolderAction) {
        m_isChooserFromLauncher = true;
        m_folderScanChooser.scanSpecificFolder(activationToken);
        return;
    }
    m_window.showDetails(activationToken);
    // Its status line tells what becomes of that.
    m_isUpdateCheckWanted = m_isUpdateCheckWanted || action == checkUpdatesAction;
    checkWantedUpdates();
}

/// The menu's user has the shield in sight, and its requests are answered by the log alone; whoever
/// comes from a launcher may have no tray.
void AppDelegate::showWhyNothingIsScanned() {
    if (std::exchange(m_isChooserFromLauncher, false) && m_state.agentIsAway) {
        m_window.showDetails();
    }
}

/// Before the launch there is no way to the agent yet.
void AppDelegate::checkWantedUpdates() {
    if (!m_state.justStart && std::exchange(m_isUpdateCheckWanted, false)) {
        m_commands.checkUpdates();
    }
}

void AppDelegate::exitApp() {
    logLine(LogLevel::Info, "exitApp.");
    m_context.terminate();
}

void AppDelegate::applicationWillTerminate() {
    logLine(LogLevel::Info, "%s() Bastion KorvaleUI Exit",
            "-[AppDelegate applicationWillTerminate:]");
    OSLoggingShutdown();
}

void AppDelegate::processAutoTest() {
    const std::optional<OneShot> oneShot = oneShotCommand(m_context.commandLine);
    if (!oneShot) {
        return;
    }
    switch (oneShot->command) {
    case OneShotCommand::CheckUpdates:
        m_commands.checkUpdates();
        break;
    case OneShotCommand::ScanBackground:
        m_commands.scanBackground();
        break;
    case OneShotCommand::StopScan:
        m_commands.stopScan();
        break;
    case OneShotCommand::FolderScan:
        m_commands.forwardFolderScan(oneShot->folder);
        break;
    }
}

} // namespace korvale
