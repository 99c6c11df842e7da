#include "tables/TableFocus.h"

#include "tables/Frame.h"
#include "tables/WindowLook.h"

#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

namespace korvale {

void TableFocus::focusCame(Qt::FocusReason reason) {
    // A click on a tab gives the focus for another reason, while the button is down.
    m_byMouse = reason == Qt::MouseFocusReason || QGuiApplication::mouseButtons() != Qt::NoButton;
}

bool TableFocus::isInUse() const {
    return m_table.isActiveWindow() && m_table.hasFocus();
}

void TableFocus::paint(QPainter& painter, const QRect& around) {
    paintFrame(painter, around, QColor(look::tableFocus));
}

} // namespace korvale
