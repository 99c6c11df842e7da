#include "shell/MenuStyle.h"

#include "tables/Frame.h"

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
    QColor quiet = option->palette.color(QPalette::PlaceholderText);
    if (element == PE_IndicatorCheckBox) {
        const bool isCurrent = (option->state & State_Selected) != 0;
        paintFrame(*painter, option->rect,
                   isCurrent ? option->palette.color(QPalette::HighlightedText) : quiet);
    } else if (element == PE_PanelMenu) {
        static constexpr int faint = 128;
        quiet.setAlpha(faint);
        paintFrame(*painter, option->rect, quiet);
    }
}

} // namespace korvale
