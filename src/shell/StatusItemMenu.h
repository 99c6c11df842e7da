#pragma once

#include "core/base/AppState.h"
#include "platform/LinkOpener.h"
#include "shell/MarkedAction.h"
#include "shell/MenuLabel.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>
#include <functional>
#include <utility>
#include <vector>

namespace korvale {

class HostCache;
class StatusItem;

/// What the items of the status menu do outside the menu.
struct StatusItemMenuActions {
    /// Told that the agent's log level is `level`; `previous` is the position whose mark goes.
    using LogLevelApplied = std::function<void(int previous, int level)>;

    std::function<void()> showDetails;
    std::function<void()> checkUpdates;
    std::function<void()> checkPolicyUpdates;
    std::function<void()> aboutApp;
    std::function<void()> scanBackground;
    std::function<void()> scanSpecificFolder;
    std::function<void()> stopScan;
    std::function<void()> exitApp; ///< logs and asks the application to terminate
    /// Asks the agent for its log level; calls back, later, when it is not `checkedPosition`.
    std::function<void(int checkedPosition, LogLevelApplied applied)> readLogLevel;
    /// Asks the agent to take the log level `position`; calls back, later, once it agreed.
    std::function<void(int position, LogLevelApplied applied)> logging;
};

/// In which form the menu is built.
struct StatusItemMenuMode {
    bool noUI = false;
    bool advanced = false;
};

/// The program's only menu, behind the status item and, on a desktop without a tray, behind a
/// button of the details window. Items stay enabled and have no shortcuts; check marks are the
/// program's alone. Main thread.
class StatusItemMenu : public QObject {
    Q_OBJECT

public:
    /// Some panels tell that they open the menu and never that it closed: `longestInPanel` after
    /// the one they are taken for having told the other.
    StatusItemMenu(AppState& state, HostCache& hostCache, StatusItem& statusItem,
                   LinkOpener& linkOpener, StatusItemMenuActions actions,
                   std::chrono::milliseconds longestInPanel = std::chrono::seconds(5));

    /// Once, at launch: builds the menu, creates the status item and gives it its first colour
    /// (yellow; green in no-UI mode).
    void setupStatusItemAndMenu(StatusItemMenuMode mode);

    [[nodiscard]] QMenu* menu() { return &m_menu; }
    [[nodiscard]] bool isNoUI() const { return m_mode.noUI; }

    /// The mark of "CM_ShowNotifications"; does nothing in no-UI mode.
    void setShowNotificationsMark(bool isOn);

    void showNotificationsClick();
    void menuWillOpen(QMenu* menu);
    void logoBtnClicked();
    void visitHome() { logoBtnClicked(); }

    /// Labels are written for whoever draws the menu.
    void setRenderer(MenuRenderer renderer);

private:
    static constexpr int logLevelCount = 4;

    void buildNormalMenu();
    void buildNoUIMenu();
    void addLoggingMenu();
    void addDetectionMenu();
    void addItem(QMenu& menu, const char* key, const std::function<void()>& action);
    MarkedAction* addMarkedItem(QMenu& menu, const char* key);
    void label(QAction& action, const QString& text);
    void opened();
    void closed();
    void takeUsersChoice();
    void applyLogLevel(int previous, int level);
    void setLogLevelMark(int position, bool isOn);

    AppState& m_state;
    HostCache& m_hostCache;
    StatusItem& m_statusItem;
    LinkOpener& m_linkOpener;
    StatusItemMenuActions m_actions;
    StatusItemMenuMode m_mode;
    MenuRenderer m_renderer = MenuRenderer::Toolkit;
    MarkedMenu m_menu;
    QTimer m_openInPanel;
    MarkedAction* m_showNotifications = nullptr;            ///< owned by m_menu; none in no-UI mode
    std::array<MarkedAction*, logLevelCount> m_logLevels{}; ///< none outside advanced mode
    std::vector<std::pair<QAction*, QString>> m_labelled;   ///< every item and its plain text
};

} // namespace korvale
