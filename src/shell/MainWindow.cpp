#include "shell/MainWindow.h"

#include "platform/Texts.h"
#include "shell/AnswerStrip.h"
#include "shell/LinkButton.h"
#include "shell/MenuLabel.h"
#include "shell/PlainToolTip.h"
#include "shell/TabBarStyle.h"
#include "shell/ToolTipReach.h"
#include "shell/WindowMemory.h"
#include "tables/CustHeaderView.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/KeyEvents.h"
#include "tables/ProcessThreatsTable.h"
#include "ui_MainWindow.h"

#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QTabBar>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace korvale {
namespace {

void showText(QLabel& label, const QString& text) {
    if (label.text() != text) {
        label.setText(text);
    }
}

/// Shows both labels, or hides both when there is nothing to count. Hidden ones keep a text: it is
/// their name for who reads the window.
void showCounter(QLabel& countLabel, QLabel& nameLabel, const std::optional<QString>& count,
                 const char* nameKey) {
    if (count) {
        showText(countLabel, *count);
    }
    showText(nameLabel, localizedText(nameKey));
    countLabel.setVisible(count.has_value());
    nameLabel.setVisible(count.has_value());
}

} // namespace

MainWindow::MainWindow(const TableControllers& tables, WindowMemory& memory, QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::MainWindow>()), m_memory(memory) {
    m_ui->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    setMinimumSize(look::smallestWidth, look::smallestHeight);

    m_tabBarStyle = new TabBarStyle;
    m_tabBarStyle->setParent(this);
    QTabBar* tabBar = m_ui->tabView->tabBar();
    tabBar->setStyle(m_tabBarStyle);
    tabBar->setExpanding(false);
    m_ui->tabView->setDocumentMode(true);
    m_ui->tabView->setAccessibleName(localizedText("HPS_Tabs"));

    m_answerStrip = new AnswerStrip;
    m_ui->tabView->setStrip(m_answerStrip);
    attachTables(tables);
    customizeTitleBarWithToolBar();
    setupFonts();
    setupKeys();
    setStatusMessage({}, {});
    setCounterLine({});
    setDark(false);
    restorePlacement();

    connect(m_ui->tabView, &QTabWidget::currentChanged, this, [this] {
        const QVariant identifier = m_ui->tabView->currentWidget()->property("tabIdentifier");
        Q_EMIT tabSelected(static_cast<TabIdentifier>(identifier.toInt()));
    });
    connect(m_ui->logoImage, &KvImageView::clicked, this, &MainWindow::logoClicked);
    m_ui->fileThreatsTable->setFocus();
}

MainWindow::~MainWindow() {
    savePlacement();
}

void MainWindow::attachTables(const TableControllers& tables) {
    tables.fileThreatsTableCtrl.setFileThreatsTable(m_ui->fileThreatsTable);
    tables.memExploitTableCtrl.setProcessThreatsTable(m_ui->processThreatsTable);
    tables.eventsTableCtrl.setEventsTable(m_ui->eventsTable);
    tables.externalDevicesTableCtrl.setExternalDevicesTable(m_ui->externalDevicesTable);
    tables.fileThreatsTableCtrl.awakeFromNib();
    tables.memExploitTableCtrl.awakeFromNib();
    tables.eventsTableCtrl.awakeFromNib();
    tables.externalDevicesTableCtrl.awakeFromNib();
    for (const ThreatsTableView* view : tableViews()) {
        view->header().setAccessibleName(view->accessibleName());
    }
}

void MainWindow::setupToolbar() {
    m_ui->appIcon->setImageSize({look::appIconSide, look::appIconSide});
    m_ui->appIcon->setAccessibleName(localizedText("HPS_ProtectionState"));
    for (QWidget* described :
         {static_cast<QWidget*>(m_ui->appIcon), static_cast<QWidget*>(m_ui->deviceName),
          static_cast<QWidget*>(m_ui->bottomStatusLbl)}) {
        new ToolTipReach(*described);
    }
    m_ui->logoImage->setImageSize({look::logoWidth, look::logoHeight});
    m_ui->logoImage->setClickable(true);
    m_ui->logoImage->setAccessibleName(localizedText("HPS_Logo"));
    setPlainToolTip(*m_ui->logoImage, localizedText("HPS_LogoToolTip"));
    m_ui->KvToolbar->setDelegate(*this);
}

void MainWindow::customizeTitleBarWithToolBar() {
    setupToolbar();
    // What is behind both shows through: one background, drawn by paintEvent.
    m_ui->KvToolbar->setAutoFillBackground(false);
    m_ui->titlbarBox->setAutoFillBackground(false);
}

QList<QLatin1String> MainWindow::toolbarDefaultItemIdentifiers(MainWindowToolbar& toolbar) {
    toolbar.setCenteredItemIdentifier(toolbar_item::appIcon);
    return {toolbar_item::emptyButton, toolbar_item::flexibleSpace, toolbar_item::appIcon,
            toolbar_item::logoImage, toolbar_item::flexibleSpace};
}

std::optional<ToolbarItem> MainWindow::toolbarItemForItemIdentifier(MainWindowToolbar& /*toolbar*/,
                                                                    QLatin1String identifier) {
    if (identifier == toolbar_item::flexibleSpace) {
        return ToolbarItem{identifier};
    }
    if (identifier == toolbar_item::appIcon) {
        return ToolbarItem{identifier, m_ui->appIcon};
    }
    if (identifier == toolbar_item::logoImage) {
        return ToolbarItem{identifier, m_ui->logoImage};
    }
    return std::nullopt; // the empty button is listed, but deliberately never built
}

void MainWindow::setupKeys() {
    const auto onKey = [this](const QKeySequence& key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    onKey(Qt::Key_Escape, [this] { escape(); });
    onKey(Qt::CTRL | Qt::Key_S, [this] { m_answerStrip->exportButton().click(); });
    onKey(Qt::CTRL | Qt::Key_F, [this] { m_answerStrip->focusFind(); });
    connect(m_answerStrip, &AnswerStrip::findDone, this,
            [this] { m_ui->tabView->currentWidget()->setFocus(); });
    onKey(Qt::CTRL | Qt::Key_N, [this] { Q_EMIT notificationsWanted(); });
    connect(m_answerStrip, &AnswerStrip::notificationsWanted, this,
            &MainWindow::notificationsWanted);
    onKey(Qt::CTRL | Qt::Key_W, [this] { close(); });
    for (const QKeyCombination next : {Qt::CTRL | Qt::Key_Tab, Qt::CTRL | Qt::Key_PageDown}) {
        onKey(next, [this] { selectNextTab(1); });
    }
    for (const QKeyCombination previous :
         {Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, Qt::CTRL | Qt::Key_PageUp}) {
        onKey(previous, [this] { selectNextTab(-1); });
    }
    onKey(Qt::Key_F10, [this] { m_ui->KvToolbar->showMenu(); });
}

/// The pane goes first, unless somebody is typing; then what was typed to find, as rows that are
/// left out must not be forgotten; then the window.
void MainWindow::escape() {
    const bool isFinding = !m_answerStrip->findText().isEmpty();
    const bool isTyping = m_answerStrip->isAncestorOf(focusWidget());
    if (isPaneShown() && !(isFinding && isTyping)) {
        Q_EMIT paneCloseWanted();
    } else if (isFinding) {
        m_answerStrip->clearFind();
        m_ui->tabView->currentWidget()->setFocus();
    } else {
        close();
    }
}

void MainWindow::setPane(QWidget& pane) {
    m_pane = &pane;
    m_pane->hide();
    m_ui->split->addWidget(m_pane);
    m_ui->split->setSizes({m_ui->split->height() - look::detailsHeight, look::detailsHeight});
}

void MainWindow::setPaneShown(bool isShown) {
    if (m_pane == nullptr) {
        return;
    }
    if (!isShown && m_pane->isAncestorOf(focusWidget())) {
        m_ui->tabView->currentWidget()->setFocus();
    }
    if (!isShown) {
        m_ui->tabView->setMinimumHeight(0);
        setMinimumHeight(look::smallestHeight);
    }
    m_pane->setVisible(isShown);
    keepRoom();
}

/// Whatever else stands around the table, one row stays in sight, and so does the pane: with large
/// text a window of the least height could not hold both.
void MainWindow::keepRoom() {
    if (!isPaneShown()) {
        return;
    }
    const auto* table = static_cast<ThreatsTableView*>(m_ui->tabView->currentWidget());
    const int around = m_ui->tabView->height() - table->viewport()->height();
    const int tableHeight = around + table->heightOfRows();
    const int paneHeight = m_pane->layout()->totalMinimumHeightForWidth(width());
    m_ui->tabView->setMinimumHeight(tableHeight);
    m_pane->setMinimumHeight(paneHeight);
    const int needed =
        height() - m_ui->split->height() + tableHeight + m_ui->split->handleWidth() + paneHeight;
    setMinimumHeight(
        std::max(look::smallestHeight, std::min(needed, screen()->availableSize().height())));
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    keepRoom();
}

bool MainWindow::isPaneShown() const {
    return m_pane != nullptr && !m_pane->isHidden();
}

void MainWindow::setupFonts() {
    QFont strong = font();
    strong.setWeight(QFont::DemiBold);
    m_ui->analyzedCountLbl->setFont(strong);
    m_ui->quarantineCountLbl->setFont(strong);
    m_ui->tabView->tabBar()->setFont(strong);
    m_ui->deviceName->setForegroundRole(QPalette::PlaceholderText);
    for (QLabel* label :
         {static_cast<QLabel*>(m_ui->bottomStatusLbl), m_ui->analyzedLbl, m_ui->quarantineLbl}) {
        label->setForegroundRole(QPalette::PlaceholderText);
    }
}

void MainWindow::selectNextTab(int step) {
    const int count = m_ui->tabView->count();
    m_ui->tabView->setCurrentIndex((m_ui->tabView->currentIndex() + step + count) % count);
}

void MainWindow::setDark(bool dark, bool highContrast) {
    m_colors = windowColors(dark, highContrast);
    m_tabBarStyle->setLineColor(m_colors.line);
    setPalette(windowPalette(dark, highContrast));
    m_answerStrip->setDark(dark);
}

void MainWindow::setTabLabel(int position, const QString& label) {
    const QString shown = menuLabel(label, MenuRenderer::Toolkit); // no mnemonic here either
    if (m_ui->tabView->tabText(position) != shown) {
        m_ui->tabView->setTabText(position, shown);
    }
}

void MainWindow::setCounterLine(const CounterLine& line) {
    showCounter(*m_ui->analyzedCountLbl, *m_ui->analyzedLbl, line.analyzed, "Analyzed");
    showCounter(*m_ui->quarantineCountLbl, *m_ui->quarantineLbl, line.quarantined,
                "HPS_Quarantined");
}

void MainWindow::setStatusMessage(const QString& text, const QString& toolTip) {
    QLabel& label = *m_ui->bottomStatusLbl;
    showText(label, text);
    // A label's name is its text; while there is none it is still a control with a name.
    label.setAccessibleName(text.isEmpty() ? localizedText("HPS_StatusLine") : QString());
    setPlainToolTip(label, toolTip);
    if (text.isEmpty()) {
        label.setAccessibleDescription({}); // the tooltip that stays tells of what was
    }
}

void MainWindow::setDeviceName(const QString& name) {
    showText(*m_ui->deviceName, name);
    setPlainToolTip(*m_ui->deviceName, name);
}

void MainWindow::setTitleBarImage(const QIcon& image, const QString& description) {
    m_ui->appIcon->setImage(image);
    setPlainToolTip(*m_ui->appIcon, description);
}

void MainWindow::setLogoImage(const QIcon& image) {
    m_ui->logoImage->setImage(image);
}

void MainWindow::setStatusMenu(QMenu* menu) {
    m_ui->KvToolbar->setMenu(menu);
}

std::array<ThreatsTableView*, 4> MainWindow::tableViews() const {
    return {m_ui->fileThreatsTable, m_ui->processThreatsTable, m_ui->eventsTable,
            m_ui->externalDevicesTable};
}

void MainWindow::restorePlacement() {
    // At scale factors above 1 a screen may be smaller than what is usual.
    resize(QSize(look::windowWidth, look::windowHeight).boundedTo(screen()->availableSize()));
    const WindowPlacement placement = m_memory.load();
    // Wayland tells no place: one kept there would put the window into a corner under X11.
    if (placement.platform == QGuiApplication::platformName()) {
        restoreInSight(*this, placement.geometry);
    }
    for (ThreatsTableView* view : tableViews()) {
        CustHeaderView& header = view->header();
        const TableOrder order = placement.orders.value(view->objectName());
        if (order != TableOrder()) {
            applyOrder(*view, order);
        }
        const QList<int> widths = placement.columnWidths.value(view->objectName());
        const auto columns = std::min<qsizetype>(widths.size(), header.count());
        for (int column = 0; column < columns; ++column) {
            if (header.visualIndex(column) + 1 < header.count()) {
                header.resizeSection(column, widths[column]); // the last takes what is left
            }
        }
    }
}

void MainWindow::savePlacement() {
    WindowPlacement placement{saveGeometry(), QGuiApplication::platformName(), {}, {}};
    for (const ThreatsTableView* view : tableViews()) {
        const CustHeaderView& header = view->header();
        QList<int>& widths = placement.columnWidths[view->objectName()];
        const int last = header.count() - 1; // which has what is left, unless it was moved
        for (int column = 0; column < last + (header.visualIndex(last) == last ? 0 : 1); ++column) {
            widths.append(header.sectionSize(column));
        }
        if (const TableOrder order = orderOf(*view); order != TableOrder()) {
            placement.orders.insert(view->objectName(), order);
        }
    }
    m_memory.save(placement);
}

void MainWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        setupFonts();
        // Once all parts have their font, and their size.
        QMetaObject::invokeMethod(this, &MainWindow::keepRoom, Qt::QueuedConnection);
    }
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        // A Wayland desktop does not say that it has minimised the window. It asks for no further
        // picture then, which shows when one is offered.
        update();
    }
    QWidget::changeEvent(event);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == windowHandle() && event->type() == QEvent::Expose) {
        const bool wasDrawn = std::exchange(m_isDrawn, windowHandle()->isExposed());
        if (m_isDrawn && !wasDrawn && isActiveWindow()) {
            // It may have got the focus before: then nobody is told of it any more.
            Q_EMIT drawnAgain();
        }
    }
    return QWidget::eventFilter(watched, event);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // Tables show that of a cell.
    QWidget* focus = focusWidget();
    if (focus != nullptr && isToolTipKey(*event)) {
        ToolTipReach::show(*focus);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void MainWindow::showEvent(QShowEvent* event) {
    m_isDrawn = true;
    windowHandle()->installEventFilter(this);
    QWidget::showEvent(event);
}

void MainWindow::hideEvent(QHideEvent* event) {
    savePlacement();
    QWidget::hideEvent(event);
}

void MainWindow::paintEvent(QPaintEvent* /*event*/) {
    const WindowColors& colors = m_colors;
    const QRect title(0, 0, width(), m_ui->titlbarBox->geometry().bottom() + 1);
    QLinearGradient background(title.topLeft(), title.bottomLeft());
    background.setColorAt(0, colors.titleTop);
    background.setColorAt(1, colors.titleBottom);
    QPainter painter(this);
    painter.fillRect(title, background);
    const int bottomLine = m_ui->_bottomStatusBox->geometry().top();
    painter.fillRect(QRect(0, bottomLine, width(), 1), colors.line);
}

} // namespace korvale
