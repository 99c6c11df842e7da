#pragma once

#include "shell/ToolbarDelegate.h"

#include <QWidget>

#include <vector>

QT_BEGIN_NAMESPACE
class QBoxLayout;
class QMenu;
QT_END_NAMESPACE

namespace korvale {

class MenuButton;

/// The toolbar of the details window: pictures only, the same for every user, without a background
/// or line of its own. Behind its items it can offer a menu under one button.
class MainWindowToolbar final : public QWidget {
    Q_OBJECT

public:
    explicit MainWindowToolbar(QWidget* parent = nullptr);

    /// Builds the items that `delegate` names, once; it is not kept.
    void setDelegate(ToolbarDelegate& delegate);

    /// The item of this identifier is kept in the middle of the toolbar.
    void setCenteredItemIdentifier(QLatin1String identifier) { m_centeredItem = identifier; }
    [[nodiscard]] QLatin1String centeredItemIdentifier() const { return m_centeredItem; }

    /// The built items, from left to right.
    [[nodiscard]] const std::vector<ToolbarItem>& items() const { return m_items; }

    /// Puts `menu` (not owned) behind a button at the trailing edge; nullptr takes the button away.
    void setMenu(QMenu* menu);
    [[nodiscard]] MenuButton* menuButton() const { return m_menuButton; }

    /// Opens that menu, as a press on the button does; nothing without one.
    void showMenu();

private:
    void addItem(QBoxLayout& side, const ToolbarItem& item);

    QLatin1String m_centeredItem;
    std::vector<ToolbarItem> m_items;
    QBoxLayout* m_trailing = nullptr;
    MenuButton* m_menuButton = nullptr;
};

} // namespace korvale
