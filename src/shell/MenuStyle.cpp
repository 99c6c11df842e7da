#include "shell/MenuStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace korvale {

MenuStyle::MenuStyle(QObject* parent) : QProxyStyle(QApplication::style()->name()) {
    setParent(parent);
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox) {
        return;
    }
    const bool isCurrent = (option->state & State_Selected) != 0;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(
        option->palette.color(isCurrent ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->drawRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter->restore();
}

} // namespace korvale
