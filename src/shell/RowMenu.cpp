#include "shell/RowMenu.h"

#include "shell/RowActions.h"

#include <QMenu>

namespace korvale {

void showRowMenu(const RowActions& actions, QWidget& owner, const QPoint& globalPosition) {
    auto* menu = new QMenu(&owner);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setPalette(owner.window()->palette()); // a window of its own, which inherits none
    for (const RowAction which :
         {RowAction::Copy, RowAction::CopyPath, RowAction::SelectAll, RowAction::Show}) {
        menu->addAction(&actions.action(which));
    }
    menu->popup(globalPosition);
}

} // namespace korvale
