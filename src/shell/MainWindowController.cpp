#include "shell/MainWindowController.h"

#include "core/base/TextFormat.h"
#include "model/StatusWatch.h"
#include "platform/CountText.h"
#include "platform/LinkOpener.h"
#include "platform/Texts.h"
#include "shell/AboutCredits.h"
#include "shell/AboutPanel.h"
#include "shell/AnswerStrip.h"
#include "shell/ContrastStyle.h"
#include "shell/CounterLine.h"
#include "shell/DetailsControl.h"
#include "shell/LinkButton.h"
#include "shell/MainWindow.h"
#include "shell/MenuStyle.h"
#include "shell/NotificationsWindow.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusLine.h"
#include "shell/TabLabels.h"
#include "shell/TableExport.h"
#include "shell/WindowActivation.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"
#include "tables/WindowLook.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QToolTip>
#include <QWindow>

#include <utility>

namespace korvale {
namespace {

EmptyReason emptyReason(const AppState& state, ListNews list) {
    // Without the header no change of a list is learnt of.
    if (state.header == ListNews::Unreadable || list == ListNews::Unreadable) {
        return EmptyReason::Unreadable;
    }
    if (state.agentIsAway) {
        return EmptyReason::AgentAway;
    }
    return list == ListNews::NotRead ? EmptyReason::NotRead : EmptyReason::NothingFound;
}

} // namespace

MainWindowController::MainWindowController(MainWindowContext context, QObject* parent)
    : QObject(parent), m_context(std::move(context)), m_memory(m_context.placementFile) {
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            &MainWindowController::focusWindowChanged);
    connect(&m_context.resources, &Resources::darkModeFlipped, this,
            &MainWindowController::showAppearance);
}

MainWindowController::~MainWindowController() {
    delete m_aboutPanel;
    delete m_notifications;
}

void MainWindowController::showDetails(const QString& activationToken) {
    if (!m_window) {
        buildWindow();
    }
    bringToFront(*m_window, activationToken);
}

void MainWindowController::buildWindow() {
    m_window = std::make_unique<MainWindow>(m_context.tables, m_memory);
    m_window->setWindowTitle(m_context.displayName);
    m_window->setWindowIcon(m_context.resources.programIcon());
    m_window->setLogoImage(m_context.resources.getImage(image::logo));
    m_window->setCounterLine(counterLine(m_context.state.activeTabIndex, m_context.state));
    showDeviceName();
    showTabLabels();
    showTitleBarImage();
    showStatusMessage();
    m_context.statusWatch.look();
    showProtection();
    showStatusMenu();
    showAppearance();
    applyFind(); // another window, another field
    new DetailsControl(*m_window, m_context.tables, m_context.fileManager); // the window's

    connect(&m_window->answerStrip(), &AnswerStrip::findTextChanged, this,
            &MainWindowController::applyFind);
    connect(&m_window->answerStrip().exportButton(), &LinkButton::clicked, this,
            &MainWindowController::exportTable);
    const TableControllers& tables = m_context.tables;
    for (const ThreatsTableController* table : std::initializer_list<const ThreatsTableController*>{
             &tables.fileThreatsTableCtrl, &tables.memExploitTableCtrl, &tables.eventsTableCtrl,
             &tables.externalDevicesTableCtrl}) {
        connect(table, &ThreatsTableController::rowCountsChanged, this,
                &MainWindowController::showFindCount);
    }
    connect(m_window.get(), &MainWindow::tabSelected, this, &MainWindowController::didSelectTab);
    connect(m_window.get(), &MainWindow::drawnAgain, this, &MainWindowController::updateDisplay,
            Qt::QueuedConnection);
    connect(m_window.get(), &MainWindow::logoClicked, this, &MainWindowController::visitHome);
    connect(m_window.get(), &MainWindow::notificationsWanted, this,
            &MainWindowController::showNotifications);
    connect(&m_context.statusLine, &StatusLine::changed, this,
            &MainWindowController::showStatusMessage);
    connect(&m_context.statusWatch, &StatusWatch::changed, this,
            &MainWindowController::showProtection);
    connect(&m_context.statusItem, &StatusItem::titleBarPictureChanged, this,
            &MainWindowController::showTitleBarImage);
    connect(&m_context.statusItem, &StatusItem::toolTipChanged, this,
            &MainWindowController::showTitleBarImage);
    connect(&m_context.statusItem, &StatusItem::trayAvailabilityChanged, this,
            &MainWindowController::showStatusMenu);
}

void MainWindowController::updateDisplay() {
    showTabLabels();
    showWhyTablesAreEmpty();
    updateCounters(m_context.state.activeTabIndex);
    const AppState& state = m_context.state;
    if (state.curIconDispColor != IconColor::Yellow) {
        m_context.iconDisplay.setIconDispColor(state.newThreatCount < 1 ? IconColor::Green
                                                                        : IconColor::Red);
    }
    m_context.statusWatch.look();
}

void MainWindowController::updateCounters(TabIdentifier tab) {
    AppState& state = m_context.state;
    if (!m_window) {
        return;
    }
    m_window->setCounterLine(counterLine(tab, state));
    if (m_window->isOnScreen()) {
        state.*factsOfTab(tab).unseenCount = 0;
    }
}

void MainWindowController::didSelectTab(TabIdentifier tab) {
    m_context.state.activeTabIndex = tab;
    applyFind();
    updateDisplay();
}

void MainWindowController::showDeviceName() {
    if (m_window) {
        m_window->setDeviceName(m_context.state.customName);
    }
}

void MainWindowController::showTabLabels() {
    if (!m_window) {
        return;
    }
    int position = 0;
    for (const TabFacts& tab : tabFacts) {
        m_window->setTabLabel(position++, tabLabel(tab, m_context.state));
    }
}

void MainWindowController::showTitleBarImage() {
    const std::optional<int> index = m_context.statusItem.titleBarImage();
    m_window->setTitleBarImage(index ? m_context.resources.getImage(*index) : QIcon(),
                               m_context.statusItem.toolTip());
}

void MainWindowController::showWhyTablesAreEmpty() {
    const AppState& state = m_context.state;
    const TableControllers& tables = m_context.tables;
    tables.fileThreatsTableCtrl.setEmptyReason(emptyReason(state, state.fileThreats));
    tables.memExploitTableCtrl.setEmptyReason(emptyReason(state, state.processThreats));
    tables.eventsTableCtrl.setEmptyReason(emptyReason(state, state.events));
    tables.externalDevicesTableCtrl.setEmptyReason(emptyReason(state, state.externalDevices));
}

void MainWindowController::showStatusMessage() {
    showWhyTablesAreEmpty(); // the agent may have come or gone
    m_window->setStatusMessage(m_context.statusLine.text(), m_context.statusLine.toolTip());
}

void MainWindowController::showProtection() {
    const StatusReport& report = m_context.statusWatch.report();
    m_window->answerStrip().setProtection(report.rule->verdict, report.why,
                                          protectionAdvice(*report.rule),
                                          lastScanText(report.lastScanEnd));
}

ThreatsTableController& MainWindowController::currentTable() const {
    const TableControllers& tables = m_context.tables;
    switch (m_context.state.activeTabIndex) {
    case TabIdentifier::Threats:
        return tables.fileThreatsTableCtrl;
    case TabIdentifier::Exploits:
        return tables.memExploitTableCtrl;
    case TabIdentifier::ExternalDevices:
        return tables.externalDevicesTableCtrl;
    case TabIdentifier::Events:
        break;
    }
    return tables.eventsTableCtrl;
}

/// One text for all tables; each takes it when it comes into sight.
void MainWindowController::applyFind() {
    currentTable().setFind(m_window->answerStrip().findText());
    showFindCount();
}

void MainWindowController::showFindCount() {
    const ThreatsTableController& table = currentTable();
    const auto count = [](std::size_t rows) { return countText(static_cast<std::int64_t>(rows)); };
    m_window->answerStrip().setFindCount(
        table.isFiltered()
            ? formatText(localizedText("HPS_FindCount"),
                         {count(table.shownRowCount()), count(table.currentRows().size())})
            : QString());
}

void MainWindowController::exportTable() {
    AnswerStrip& strip = m_window->answerStrip();
    if (!m_export) {
        m_export = std::make_unique<TableExport>(strip);
    }
    const auto* bus = m_context.sessionBus;
    m_export->offer(currentTable(), strip.exportButton(),
                    bus != nullptr && *bus ? &**bus : nullptr);
}

void MainWindowController::showStatusMenu() {
    m_window->setStatusMenu(m_context.statusItem.isTrayAvailable() ? nullptr
                                                                   : m_context.statusMenu);
}

void MainWindowController::showAppearance() {
    if (m_isMenuDressed) {
        dressStatusMenu();
    }
    if (!m_window && !m_aboutPanel && !m_notifications) {
        return; // nothing of the toolkit's looks is touched before something is shown
    }
    const bool dark = m_context.resources.isDark();
    const bool highContrast = m_context.resources.isHighContrast();
    ContrastStyle::setInUse(highContrast);
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        // Where the desktop draws no title bars the toolkit does, in the colours that the program
        // has when a window is first shown.
        QApplication::setPalette(windowPalette(dark, highContrast));
    }
    if (m_window) {
        m_window->setDark(dark, highContrast);
    }
    if (m_aboutPanel) {
        m_aboutPanel->setDark(dark, highContrast);
    }
    if (m_notifications) {
        m_notifications->setDark(dark, highContrast);
    }
    QToolTip::setPalette(windowPalette(dark, highContrast));
}

void MainWindowController::dressStatusMenu() {
    if (m_context.statusMenu == nullptr) {
        return;
    }
    // Submenus are windows of their own, which inherit neither style nor palette.
    QList<QMenu*> menus = m_context.statusMenu->findChildren<QMenu*>();
    menus.append(m_context.statusMenu);
    if (!m_isMenuDressed) {
        auto* style = new MenuStyle(m_context.statusMenu);
        for (QMenu* menu : std::as_const(menus)) {
            menu->setStyle(style);
        }
        m_isMenuDressed = true;
    }
    const QPalette palette =
        windowPalette(m_context.resources.isDark(), m_context.resources.isHighContrast());
    for (QMenu* menu : std::as_const(menus)) {
        menu->setPalette(palette);
    }
}

void MainWindowController::focusWindowChanged(QWindow* focusWindow) {
    if (focusWindow == nullptr) {
        appWindowResignMain();
    } else if (m_window && focusWindow == m_window->windowHandle()) {
        appWindowBecameMain(); // no other window shows what the agent has found
    }
}

void MainWindowController::appWindowBecameMain() {
    // After the present event, not inside it.
    QMetaObject::invokeMethod(this, &MainWindowController::becameMain, Qt::QueuedConnection);
}

void MainWindowController::appWindowResignMain() {
    // Called when the key focus goes, not when the main window changes; either way nothing is due.
}

void MainWindowController::visitHome() {
    m_context.linkOpener.openLink(localizedText("Url"), {});
}

void MainWindowController::showNotifications() {
    if (!m_notifications) {
        m_notifications = new NotificationsWindow(m_context.notifications, m_context.linkOpener);
        m_notifications->setAttribute(Qt::WA_DeleteOnClose);
        m_notifications->setWindowIcon(m_context.resources.programIcon());
    }
    showAppearance();
    bringToFront(*m_notifications, {});
}

void MainWindowController::aboutApp(const QString& activationToken) {
    if (!m_aboutPanel) {
        m_aboutPanel = new AboutPanel(m_context.resources.programIcon(), m_context.displayName,
                                      m_context.shortVersion);
        m_aboutPanel->setAttribute(Qt::WA_DeleteOnClose);
    }
    showAppearance();
    m_aboutPanel->setCredits(aboutCredits(m_context.state));
    bringToFront(*m_aboutPanel, activationToken);
}

} // namespace korvale
