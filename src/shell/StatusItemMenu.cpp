#include "shell/StatusItemMenu.h"

#include "model/HostCache.h"
#include "platform/Texts.h"
#include "shell/StatusItem.h"

#include <algorithm>

namespace korvale {
namespace {

QString logLevelsName() {
    return QStringLiteral("LogLevels");
}

} // namespace

StatusItemMenu::StatusItemMenu(AppState& state, HostCache& hostCache, StatusItem& statusItem,
                               LinkOpener& linkOpener, StatusItemMenuActions actions,
                               std::chrono::milliseconds longestInPanel)
    : m_state(state),
      m_hostCache(hostCache),
      m_statusItem(statusItem),
      m_linkOpener(linkOpener),
      m_actions(std::move(actions)) {
    m_openInPanel.setSingleShot(true);
    m_openInPanel.setInterval(longestInPanel);
    connect(&m_openInPanel, &QTimer::timeout, this, &StatusItemMenu::closed);
    connect(&m_menu, &QMenu::aboutToShow, this, &StatusItemMenu::opened);
    connect(&m_menu, &QMenu::aboutToHide, this, &StatusItemMenu::closed);
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
    addItem(m_menu, "ShowDetailsMenu", m_actions.showDetails);
    m_menu.addSeparator();
    addItem(m_menu, "CheckForUpdates", m_actions.checkUpdates);
    if (m_state.allowCheckForPolicyUpdate) {
        addItem(m_menu, "CM_CheckForPolicyUpdate", m_actions.checkPolicyUpdates);
    }
    addItem(m_menu, "About", m_actions.aboutApp);
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
    addItem(m_menu, "Exit", m_actions.exitApp);
}

void StatusItemMenu::buildNoUIMenu() {
    addItem(m_menu, "About", m_actions.aboutApp);
    m_menu.addSeparator();
    addItem(m_menu, "Exit", m_actions.exitApp);
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
            m_actions.logging(position,
                              [this](int previous, int level) { applyLogLevel(previous, level); });
        });
    }
    connect(levels, &QMenu::aboutToShow, this, [this, levels] { menuWillOpen(levels); });
    label(*levels->menuAction(), localizedText("TM_Logging"));
    m_menu.addMenu(levels);
}

void StatusItemMenu::addDetectionMenu() {
    auto* scans = new QMenu(&m_menu);
    addItem(*scans, "TM_Background", m_actions.scanBackground);
    addItem(*scans, "TM_Folder", m_actions.scanSpecificFolder);
    addItem(*scans, "TM_Stop", m_actions.stopScan);
    label(*scans->menuAction(), localizedText("TM_Detection"));
    m_menu.addMenu(scans);
}

void StatusItemMenu::addItem(QMenu& menu, const char* key, const std::function<void()>& action) {
    auto* item = new QAction(&menu);
    label(*item, localizedText(key));
    connect(item, &QAction::triggered, this, [action] { action(); });
    menu.addAction(item);
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
    m_renderer = renderer;
    for (const auto& [action, text] : m_labelled) {
        action->setText(menuLabel(text, renderer));
    }
}

void StatusItemMenu::opened() {
    m_statusItem.setMenuOpen(true);
    if (m_renderer == MenuRenderer::Panel) {
        m_openInPanel.start();
    }
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
    m_actions.readLogLevel(position,
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

void StatusItemMenu::logoBtnClicked() {
    m_linkOpener.openLink(localizedText("Url"));
}

} // namespace korvale
