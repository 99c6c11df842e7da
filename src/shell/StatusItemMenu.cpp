#include "shell/StatusItemMenu.h"

#include "model/HostCache.h"
#include "platform/Texts.h"
#include "shell/StatusItem.h"

#include <algorithm>
#include <functional>

namespace korvale {
namespace {

QString logLevelsName() {
    return QStringLiteral("LogLevels");
}

} // namespace

StatusItemMenu::StatusItemMenu(AppState& state, HostCache& hostCache, StatusItem& statusItem,
                               AgentCommands& commands, std::chrono::milliseconds longestInPanel)
    : m_state(state), m_hostCache(hostCache), m_statusItem(statusItem), m_commands(commands) {
    m_openInPanel.setSingleShot(true);
    m_openInPanel.setInterval(longestInPanel);
    connect(&m_openInPanel, &QTimer::timeout, this, &StatusItemMenu::closed);
    connect(&m_menu, &QMenu::aboutToShow, this, &StatusItemMenu::opened);
    connect(&m_menu, &QMenu::aboutToHide, this, &StatusItemMenu::hidden);
    connect(&m_menu, &QMenu::triggered, this, &StatusItemMenu::closed);
}

void StatusItemMenu::setupStatusItemAndMenu(StatusItemMenuMode mode) {
    m_mode = mode;
    m_menu.setTitle(localizedText("Company"));
    if (mode.noUI) {
        buildNoUIMenu();
    } else {
        buildNormalMenu();
    }
    takeUsersChoice();
    m_statusItem.create();
    m_statusItem.setIconDispColor(mode.noUI ? IconColor::Green : IconColor::Yellow);
}

void StatusItemMenu::buildNormalMenu() {
    addItem(m_menu, "ShowDetailsMenu", &StatusItemMenu::showDetails);
    m_menu.addSeparator();
    addItem(m_menu, "CheckForUpdates", &AgentCommands::checkUpdates);
    if (m_state.allowCheckForPolicyUpdate) {
        addItem(m_menu, "CM_CheckForPolicyUpdate", &AgentCommands::checkPolicyUpdates);
    }
    addItem(m_menu, "About", &StatusItemMenu::aboutApp);
    m_menu.addSeparator();
    m_showNotifications = addMarkedItem(m_menu, "CM_ShowNotifications");
    connect(m_showNotifications, &QAction::triggered, this,
            &StatusItemMenu::showNotificationsClick);
    if (m_mode.advanced) {
        m_menu.addSeparator();
        addLoggingMenu();
        addDetectionMenu();
    }
    m_menu.addSeparator();
    addItem(m_menu, "Exit", &StatusItemMenu::exitApp);
}

void StatusItemMenu::buildNoUIMenu() {
    addItem(m_menu, "About", &StatusItemMenu::aboutApp);
    m_menu.addSeparator();
    addItem(m_menu, "Exit", &StatusItemMenu::exitApp);
}

void StatusItemMenu::addLoggingMenu() {
    static constexpr std::array<const char*, logLevelCount> keys{"TM_Error", "TM_Warning",
                                                                 "TM_Information", "TM_All"};
    auto* levels = new MarkedMenu(&m_menu);
    // Its title is the text of the item that opens it; its own name stands here.
    levels->setObjectName(logLevelsName());
    for (int position = 0; position < logLevelCount; ++position) {
        const auto index = static_cast<std::size_t>(position);
        m_logLevels[index] = addMarkedItem(*levels, keys[index]);
        connect(m_logLevels[index], &QAction::triggered, this, [this, position] {
            m_commands.logging(position,
                               [this](int previous, int level) { applyLogLevel(previous, level); });
        });
    }
    connect(levels, &QMenu::aboutToShow, this, [this, levels] { menuWillOpen(levels); });
    label(*levels->menuAction(), localizedText("TM_Logging"));
    m_menu.addMenu(levels);
}

void StatusItemMenu::addDetectionMenu() {
    auto* scans = new QMenu(&m_menu);
    addItem(*scans, "TM_Background", &AgentCommands::scanBackground);
    addItem(*scans, "TM_Folder", &StatusItemMenu::scanSpecificFolder);
    addItem(*scans, "TM_Stop", &AgentCommands::stopScan);
    label(*scans->menuAction(), localizedText("TM_Detection"));
    m_menu.addMenu(scans);
}

void StatusItemMenu::addItem(QMenu& menu, const char* key, void (StatusItemMenu::*chosen)()) {
    connect(addPlainItem(menu, key), &QAction::triggered, this, chosen);
}

void StatusItemMenu::addItem(QMenu& menu, const char* key, void (AgentCommands::*command)()) {
    connect(addPlainItem(menu, key), &QAction::triggered, this,
            [this, command] { std::invoke(command, m_commands); });
}

QAction* StatusItemMenu::addPlainItem(QMenu& menu, const char* key) {
    auto* item = new QAction(&menu);
    label(*item, localizedText(key));
    menu.addAction(item);
    return item;
}

MarkedAction* StatusItemMenu::addMarkedItem(QMenu& menu, const char* key) {
    auto* item = new MarkedAction(&menu);
    label(*item, localizedText(key));
    menu.addAction(item);
    return item;
}

void StatusItemMenu::label(QAction& action, const QString& text) {
    action.setText(menuLabel(text, m_renderer));
    m_labelled.emplace_back(&action, text);
}

void StatusItemMenu::setRenderer(MenuRenderer renderer) {
    if (renderer != m_renderer) {
        m_panelSaysClosed = false; // the next panel may be another one
    }
    m_renderer = renderer;
    writeLabels(renderer);
}

void StatusItemMenu::writeLabels(MenuRenderer renderer) {
    for (const auto& [action, text] : m_labelled) {
        action->setText(menuLabel(text, renderer));
    }
}

void StatusItemMenu::popUp(const QPoint& place) {
    m_isPoppedUp = true;
    writeLabels(MenuRenderer::Toolkit);
    m_menu.popup(place);
}

void StatusItemMenu::opened() {
    m_statusItem.setMenuOpen(true);
    if (m_renderer == MenuRenderer::Toolkit || m_isPoppedUp) {
        Q_EMIT aboutToBeDrawn();
    } else if (!m_panelSaysClosed) {
        m_openInPanel.start();
    }
}

void StatusItemMenu::hidden() {
    if (m_isPoppedUp) {
        m_isPoppedUp = false;
        writeLabels(m_renderer);
    } else if (m_renderer == MenuRenderer::Panel) {
        m_panelSaysClosed = true;
    }
    closed();
}

void StatusItemMenu::closed() {
    m_openInPanel.stop();
    m_statusItem.setMenuOpen(false);
}

void StatusItemMenu::takeUsersChoice() {
    if (m_hostCache.hasCurrentUserChangedNotification()) {
        m_state.showNotifications = m_hostCache.isCurrentUserNotificationOn();
        setShowNotificationsMark(m_state.showNotifications);
    }
}

void StatusItemMenu::setShowNotificationsMark(bool isOn) {
    if (m_showNotifications != nullptr) {
        m_showNotifications->setMark(isOn);
    }
}

void StatusItemMenu::showNotificationsClick() {
    m_state.showNotificationsChanged = true;
    m_state.showNotifications = !m_state.showNotifications;
    setShowNotificationsMark(m_state.showNotifications);
    m_hostCache.setCurrentUserNotification(m_state.showNotifications, true);
}

void StatusItemMenu::menuWillOpen(QMenu* menu) {
    if (menu->objectName() != logLevelsName()) {
        return;
    }
    const auto checked =
        std::find_if(m_logLevels.begin(), m_logLevels.end(),
                     [](const MarkedAction* level) { return level != nullptr && level->mark(); });
    const int position =
        checked == m_logLevels.end() ? -1 : static_cast<int>(checked - m_logLevels.begin());
    m_commands.readLogLevel(position,
                            [this](int previous, int level) { applyLogLevel(previous, level); });
}

void StatusItemMenu::applyLogLevel(int previous, int level) {
    setLogLevelMark(previous, false);
    setLogLevelMark(level, true);
}

/// The agent may have levels for which there is no item.
void StatusItemMenu::setLogLevelMark(int position, bool isOn) {
    if (position >= 0 && position < logLevelCount) {
        m_logLevels[static_cast<std::size_t>(position)]->setMark(isOn);
    }
}

} // namespace korvale
