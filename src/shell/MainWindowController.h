#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "shell/TableControllers.h"
#include "shell/WindowMemory.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QMenu;
class QWindow;
QT_END_NAMESPACE

namespace korvale {

class AboutPanel;
class FileManager;
class LinkOpener;
class MainWindow;
class NotificationHistory;
class NotificationsWindow;
class Resources;
class StatusItem;
class StatusLine;
class StatusWatch;
class TableExport;
class ThreatsTableController;

/// What the details window and the About panel show and set going. Everything referred to outlives
/// the controller.
struct MainWindowContext {
    AppState& state;
    const Resources& resources;
    const StatusItem& statusItem;
    const StatusLine& statusLine;
    StatusWatch& statusWatch;
    IconDisplay& iconDisplay;
    TableControllers tables;
    LinkOpener& linkOpener;
    NotificationHistory& notifications;
    FileManager& fileManager;
    QMenu* statusMenu = nullptr; ///< offered by the window where no tray is
    QString displayName;         ///< of the program, for titles
    QString shortVersion;
    QString placementFile; ///< where the window's looks are remembered
    const std::optional<QDBusConnection>* sessionBus = nullptr; ///< once it is known to answer
};

/// Keeps what the details window shows in step with the state. The window itself is built when it
/// is first shown; until then, and without any user interface, only the state and the colour
/// change. Main thread.
class MainWindowController final : public QObject, public CounterDisplay, public DeviceNameDisplay {
    Q_OBJECT

public:
    explicit MainWindowController(MainWindowContext context, QObject* parent = nullptr);
    ~MainWindowController() override;

    /// Menu action: brings the window to the front and makes it the active one. The token is what
    /// the desktop handed on with the user's wish, or empty.
    void showDetails(const QString& activationToken = {});

    /// Menu action: shows the About panel with what is known now.
    void aboutApp(const QString& activationToken = {});

    /// Shows what the desktop notifications said.
    void showNotifications();

    /// Refreshes tab labels, counters and the colour; a yellow icon is left alone.
    void updateDisplay() override;

    /// Shows the counters of `tab`, and counts its items as seen unless the window is out of sight:
    /// hidden, minimised or not built yet.
    void updateCounters(TabIdentifier tab);

    /// Gives the status menu the looks of the desktop's appearance, where the toolkit draws it.
    void dressStatusMenu();

    /// Lets empty tables say what is known: that nothing was found, or why that is not known.
    void showWhyTablesAreEmpty();

    /// Shows the device's present name.
    void showDeviceName() override;

    /// The logo was clicked: opens the home page.
    void visitHome();

    /// The window, nullptr until it is first shown.
    [[nodiscard]] MainWindow* window() const { return m_window.get(); }

Q_SIGNALS:
    /// The details window became the one that the person looks at: time to read the agent's batch.
    /// After the toolkit's event, not inside it.
    void becameMain();

private:
    void buildWindow();
    void showTabLabels();
    void showTitleBarImage();
    void showStatusMessage();
    void showProtection();
    void applyFind();
    void showFindCount();
    void exportTable();
    [[nodiscard]] ThreatsTableController& currentTable() const;
    void showStatusMenu();
    void showAppearance();
    void didSelectTab(TabIdentifier tab);
    void focusWindowChanged(QWindow* focusWindow);
    void appWindowBecameMain();
    void appWindowResignMain();

    MainWindowContext m_context;
    WindowMemory m_memory;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<TableExport> m_export; ///< made when first asked for
    QPointer<AboutPanel> m_aboutPanel;
    QPointer<NotificationsWindow> m_notifications;
    bool m_isMenuDressed = false;
};

} // namespace korvale
