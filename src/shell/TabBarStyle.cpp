#include "shell/TabBarStyle.h"

#include "tables/WindowLook.h"

#include <QPainter>
#include <QStyleOptionTab>

#include <algorithm>

namespace korvale {

void TabBarStyle::drawTab(const QStyleOptionTab& tab, QPainter& painter) const {
    const QPalette& palette = tab.palette;
    const bool selected = (tab.state & State_Selected) != 0;
    const bool hovered = (tab.state & State_MouseOver) != 0;
    const QPalette::ColorRole ink =
        selected || hovered ? QPalette::WindowText : QPalette::PlaceholderText;
    painter.save();
    if (selected) {
        QRect underline = tab.rect.adjusted(look::tabPadding / 2, 0, -look::tabPadding / 2, 0);
        underline.setTop(tab.rect.bottom() - look::tabUnderline + 1);
        painter.fillRect(underline, palette.color(QPalette::Highlight));
    }
    if ((tab.state & State_HasFocus) != 0) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette.color(QPalette::Highlight), 1.5));
        painter.drawRoundedRect(QRectF(tab.rect).adjusted(3, 5, -3, -6), 5, 5);
    }
    // A label ends with a blank where there is no count: it shall not shift what is seen.
    drawItemText(&painter, tab.rect, Qt::AlignCenter | Qt::TextShowMnemonic, palette,
                 (tab.state & State_Enabled) != 0, tab.text.trimmed(), ink);
    painter.restore();
}

void TabBarStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    if (element == CE_TabBarTab && tab != nullptr) {
        drawTab(*tab, *painter);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void TabBarStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    if (element == PE_FrameTabBarBase) {
        QRect line = option->rect;
        line.setTop(line.bottom());
        painter->fillRect(line, m_line);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

QSize TabBarStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                    const QSize& size, const QWidget* widget) const {
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    if (type == CT_TabBarTab && tab != nullptr) {
        const QSize text = tab->fontMetrics.size(Qt::TextShowMnemonic, tab->text.trimmed());
        return {text.width() + 2 * look::tabPadding,
                std::max(look::tabHeight, text.height() + look::tabPadding)};
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int TabBarStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                             const QWidget* widget) const {
    switch (metric) {
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabOverlap:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

} // namespace korvale
