#include "shell/MainWindowToolbar.h"

#include "platform/Texts.h"
#include "shell/MenuButton.h"
#include "shell/PlainToolTip.h"
#include "tables/WindowLook.h"

#include <QHBoxLayout>
#include <QMenu>

namespace korvale {

MainWindowToolbar::MainWindowToolbar(QWidget* parent) : QWidget(parent) {}

void MainWindowToolbar::addItem(QBoxLayout& side, const ToolbarItem& item) {
    if (item.view != nullptr) {
        side.addWidget(item.view);
    } else if (item.identifier == toolbar_item::flexibleSpace) {
        side.addStretch(1);
    }
    m_items.push_back(item);
}

void MainWindowToolbar::setDelegate(ToolbarDelegate& delegate) {
    auto* whole = new QHBoxLayout(this);
    whole->setContentsMargins(look::margin, look::toolbarPadding, look::margin,
                              look::toolbarPadding);
    whole->setSpacing(0);
    auto* leading = new QHBoxLayout;
    m_trailing = new QHBoxLayout;
    m_trailing->addSpacing(look::toolbarSpacing); // which is mirrored, as margins are not
    // Equal shares on both sides keep what stands between them in the middle.
    whole->addLayout(leading, 1);
    whole->addLayout(m_trailing, 1);

    QBoxLayout* side = leading;
    for (const QLatin1String identifier : delegate.toolbarDefaultItemIdentifiers(*this)) {
        const auto item = delegate.toolbarItemForItemIdentifier(*this, identifier);
        if (!item) {
            continue;
        }
        if (identifier == m_centeredItem && item->view != nullptr) {
            whole->insertWidget(1, item->view);
            m_items.push_back(*item);
            side = m_trailing;
        } else {
            addItem(*side, *item);
        }
    }
    leading->addSpacing(look::toolbarSpacing);
}

void MainWindowToolbar::setMenu(QMenu* menu) {
    if (menu == nullptr) {
        delete m_menuButton;
        m_menuButton = nullptr;
        return;
    }
    if (m_menuButton == nullptr) {
        m_menuButton = new MenuButton(this);
        m_menuButton->setObjectName(QStringLiteral("menuButton"));
        m_menuButton->setAccessibleName(localizedText("HPS_Menu"));
        setPlainToolTip(*m_menuButton, localizedText("HPS_MenuToolTip"));
        m_trailing->addWidget(m_menuButton);
    }
    m_menuButton->setMenu(menu);
}

void MainWindowToolbar::showMenu() {
    if (m_menuButton != nullptr) {
        m_menuButton->showMenu();
    }
}

} // namespace korvale
