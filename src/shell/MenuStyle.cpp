#include "shell/MenuStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace korvale {
namespace {

void drawFrame(QPainter& painter, const QRect& rect, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(color);
    painter.drawRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

} // namespace

MenuStyle::MenuStyle(QObject* parent) : QProxyStyle(QApplication::style()->name()) {
    setParent(parent);
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    QColor quiet = option->palette.color(QPalette::PlaceholderText);
    if (element == PE_IndicatorCheckBox) {
        const bool isCurrent = (option->state & State_Selected) != 0;
        drawFrame(*painter, option->rect,
                  isCurrent ? option->palette.color(QPalette::HighlightedText) : quiet);
    } else if (element == PE_PanelMenu) {
        static constexpr int faint = 128;
        quiet.setAlpha(faint);
        drawFrame(*painter, option->rect, quiet);
    }
}

} // namespace korvale
