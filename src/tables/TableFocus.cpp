#include "tables/TableFocus.h"

#include "tables/WindowLook.h"

#include <QPainter>
#include <QWidget>

namespace korvale {

void TableFocus::focusCame(Qt::FocusReason reason) {
    m_byKeyboard = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
}

bool TableFocus::isInUse() const {
    return m_table.isActiveWindow() && m_table.hasFocus();
}

void TableFocus::paint(QPainter& painter, const QRect& around) {
    painter.setPen(QColor(look::tableFocus));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(around.adjusted(0, 0, -1, -1));
}

} // namespace korvale
