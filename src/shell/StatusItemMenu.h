#pragma once

#include "core/base/AgentCommands.h"
#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "shell/MarkedAction.h"
#include "shell/MenuLabel.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>
#include <utility>
#include <vector>

namespace korvale {

class HostCache;
class StatusItem;

/// In which form the menu is built.
struct StatusItemMenuMode {
    bool noUI = false;
    bool advanced = false;
};

/// The program's only menu, behind the status item and, on a desktop without a tray, behind a
/// button of the details window. Items stay enabled and have no shortcuts; check marks are the
/// program's alone. Main thread.
class StatusItemMenu : public QObject, public NotificationMark {
    Q_OBJECT

public:
    /// Some panels tell that they open the menu and never that it closed: `longestInPanel` after
    /// the one they are taken for having told the other. A panel that has told it once is believed
    /// from then on.
    StatusItemMenu(AppState& state, HostCache& hostCache, StatusItem& statusItem,
                   AgentCommands& commands,
                   std::chrono::milliseconds longestInPanel = std::chrono::seconds(5));

    /// Once, at launch: builds the menu, creates the status item and gives it its first colour
    /// (yellow; green in no-UI mode).
    void setupStatusItemAndMenu(StatusItemMenuMode mode);

    [[nodiscard]] QMenu* menu() { return &m_menu; }
    [[nodiscard]] bool isNoUI() const { return m_mode.noUI; }

    /// The mark of "CM_ShowNotifications"; does nothing in no-UI mode.
    void setShowNotificationsMark(bool isOn) override;

    void showNotificationsClick();
    void menuWillOpen(QMenu* menu);

    /// Who draws the menu from now on: labels are written for that one.
    void setRenderer(MenuRenderer renderer);

    /// Shows the menu itself, once, for a panel that draws none. `place` is in screen coordinates.
    void popUp(const QPoint& place);

Q_SIGNALS:
    /// The toolkit, and not a panel, is about to show the menu.
    void aboutToBeDrawn();

    // The items that are no business of the agent's, when chosen.
    void showDetails();
    void aboutApp();
    void scanSpecificFolder();
    void exitApp();

private:
    static constexpr int logLevelCount = 4;

    void buildNormalMenu();
    void buildNoUIMenu();
    void addLoggingMenu();
    void addDetectionMenu();
    void addItem(QMenu& menu, const char* key, void (StatusItemMenu::*chosen)());
    void addItem(QMenu& menu, const char* key, void (AgentCommands::*command)());
    QAction* addPlainItem(QMenu& menu, const char* key);
    MarkedAction* addMarkedItem(QMenu& menu, const char* key);
    void label(QAction& action, const QString& text);
    void writeLabels(MenuRenderer renderer);
    void opened();
    void hidden();
    void closed();
    void takeUsersChoice();
    void applyLogLevel(int previous, int level);
    void setLogLevelMark(int position, bool isOn);

    AppState& m_state;
    HostCache& m_hostCache;
    StatusItem& m_statusItem;
    AgentCommands& m_commands;
    StatusItemMenuMode m_mode;
    MenuRenderer m_renderer = MenuRenderer::Toolkit;
    MarkedMenu m_menu;
    bool m_isPoppedUp = false;      ///< shown by the program while a panel is the renderer
    bool m_panelSaysClosed = false; ///< this one has said so at least once
    QTimer m_openInPanel;
    MarkedAction* m_showNotifications = nullptr;            ///< owned by m_menu; none in no-UI mode
    std::array<MarkedAction*, logLevelCount> m_logLevels{}; ///< none outside advanced mode
    std::vector<std::pair<QAction*, QString>> m_labelled;   ///< every item and its plain text
};

} // namespace korvale
