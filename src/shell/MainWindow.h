#pragma once

#include "core/base/AppState.h"
#include "shell/CounterLine.h"
#include "shell/TableControllers.h"
#include "shell/ToolbarDelegate.h"
#include "tables/WindowLook.h"

#include <QWidget>

#include <array>
#include <memory>

QT_BEGIN_NAMESPACE
class QIcon;
class QMenu;
QT_END_NAMESPACE

namespace korvale {

class AnswerStrip;
class TabBarStyle;
class ThreatsTableView;
class WindowMemory;
namespace Ui {
class MainWindow;
}

/// The details window: a shell around the layout of MainWindow.ui that shows what it is given. Only
/// hidden when it is closed. It remembers its place, its size and the widths of its columns.
class MainWindow final : public QWidget, private ToolbarDelegate {
    Q_OBJECT

public:
    /// Attaches a view to each controller. `memory` outlives the window.
    MainWindow(const TableControllers& tables, WindowMemory& memory, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// The chrome's appearance; tables are light in both.
    void setDark(bool dark, bool highContrast = false);

    /// Positions count from 0, as the tabs stand on screen.
    void setTabLabel(int position, const QString& label);
    void setCounterLine(const CounterLine& line);
    void setStatusMessage(const QString& text, const QString& toolTip);
    [[nodiscard]] AnswerStrip& answerStrip() { return *m_answerStrip; }
    void setDeviceName(const QString& name);
    /// The colour picture, and the same in words.
    void setTitleBarImage(const QIcon& image, const QString& description);
    void setLogoImage(const QIcon& image);
    /// The menu behind the toolbar's button; nullptr: no button. Not owned.
    void setStatusMenu(QMenu* menu);

    /// The pane below the tables, hidden at first; the window owns it. Once.
    void setPane(QWidget& pane);
    /// A pane that closes hands its focus on to the table.
    void setPaneShown(bool isShown);
    [[nodiscard]] bool isPaneShown() const;

    /// True while the window is shown, not minimised, and drawn: the last is how a desktop tells
    /// that hides a window without a word.
    [[nodiscard]] bool isOnScreen() const { return isVisible() && !isMinimized() && m_isDrawn; }

Q_SIGNALS:
    void tabSelected(korvale::TabIdentifier tab);
    void logoClicked();
    void notificationsWanted();
    /// Escape, while the pane is shown.
    void paneCloseWanted();
    /// The window that has the focus is in sight again.
    void drawnAgain();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QList<QLatin1String>
    toolbarDefaultItemIdentifiers(MainWindowToolbar& toolbar) override;
    [[nodiscard]] std::optional<ToolbarItem>
    toolbarItemForItemIdentifier(MainWindowToolbar& toolbar, QLatin1String identifier) override;

    void attachTables(const TableControllers& tables);
    void customizeTitleBarWithToolBar();
    void setupToolbar();
    void setupKeys();
    void escape();
    void setupFonts();
    void keepRoom();
    void selectNextTab(int step);
    void restorePlacement();
    void savePlacement();
    [[nodiscard]] std::array<ThreatsTableView*, 4> tableViews() const;

    std::unique_ptr<Ui::MainWindow> m_ui;
    WindowMemory& m_memory;
    AnswerStrip* m_answerStrip = nullptr;
    QWidget* m_pane = nullptr; ///< none until it is first wanted
    TabBarStyle* m_tabBarStyle = nullptr;
    WindowColors m_colors;
    bool m_isDrawn = true; ///< as the desktop said last
};

} // namespace korvale
