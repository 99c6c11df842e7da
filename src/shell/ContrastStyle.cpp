#include "shell/ContrastStyle.h"

#include "tables/Frame.h"

#include <QApplication>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionSlider>

namespace korvale {
namespace {

constexpr int focusFrame = 2; // pixels
constexpr int sliderMargin = 4;
constexpr int gripLength = 24;

QColor ink(const QStyleOption& option) {
    return option.palette.color(QPalette::WindowText);
}

/// Thicker around what has the focus.
void drawEdge(QPainter& painter, const QStyleOption& option, QPalette::ColorRole role) {
    const bool hasFocus = (option.state & QStyle::State_HasFocus) != 0;
    paintFrame(painter, option.rect, option.palette.color(role), hasFocus ? focusFrame : 1);
}

} // namespace

ContrastStyle::ContrastStyle(const QString& base) : QProxyStyle(base), m_base(base) {}

void ContrastStyle::setInUse(bool isInUse) {
    QStyle& style = *QApplication::style();
    const auto* used = qobject_cast<const ContrastStyle*>(&style);
    if (isInUse && used == nullptr) {
        QApplication::setStyle(new ContrastStyle(style.name()));
    } else if (!isInUse && used != nullptr) {
        QApplication::setStyle(QStyleFactory::create(used->m_base));
    }
}

void ContrastStyle::drawScrollBar(const QStyleOptionComplex& option, QPainter& painter,
                                  const QWidget* widget) const {
    const auto place = [&](SubControl part) {
        return proxy()->subControlRect(CC_ScrollBar, &option, part, widget);
    };
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
    const bool isUpright = bar != nullptr && bar->orientation == Qt::Vertical;
    painter.fillRect(option.rect, option.palette.color(QPalette::Base));
    paintFrame(painter, option.rect, ink(option));
    if ((option.state & State_Enabled) != 0) {
        const QRect slider = place(SC_ScrollBarSlider);
        painter.fillRect(isUpright ? slider.adjusted(sliderMargin, 1, -sliderMargin, -1)
                                   : slider.adjusted(1, sliderMargin, -1, -sliderMargin),
                         ink(option));
    }
    const bool isMirrored = option.direction == Qt::RightToLeft;
    const PrimitiveElement back = isUpright    ? PE_IndicatorArrowUp
                                  : isMirrored ? PE_IndicatorArrowRight
                                               : PE_IndicatorArrowLeft;
    const PrimitiveElement forth = isUpright    ? PE_IndicatorArrowDown
                                   : isMirrored ? PE_IndicatorArrowLeft
                                                : PE_IndicatorArrowRight;
    QStyleOption arrow;
    arrow.state = option.state;
    arrow.palette = option.palette;
    arrow.rect = place(SC_ScrollBarSubLine)
                     .adjusted(sliderMargin, sliderMargin, -sliderMargin, -sliderMargin);
    proxy()->drawPrimitive(back, &arrow, &painter, widget);
    arrow.rect = place(SC_ScrollBarAddLine)
                     .adjusted(sliderMargin, sliderMargin, -sliderMargin, -sliderMargin);
    proxy()->drawPrimitive(forth, &arrow, &painter, widget);
}

void ContrastStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    if (control == CC_ScrollBar) {
        drawScrollBar(*option, *painter, widget);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox) {
        drawEdge(*painter, *option, QPalette::ButtonText);
    }
}

void ContrastStyle::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    if (element == CE_Splitter) {
        const bool isWide = option->rect.width() > option->rect.height();
        QRect grip = option->rect;
        grip.setSize(isWide ? QSize(gripLength, grip.height() - 2)
                            : QSize(grip.width() - 2, gripLength));
        grip.moveCenter(option->rect.center());
        painter->fillRect(grip, ink(*option));
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ProgressBarGroove) {
        paintFrame(*painter, option->rect, ink(*option));
    }
}

void ContrastStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
    case PE_FrameLineEdit:
        drawEdge(*painter, *option, QPalette::Text);
        break;
    case PE_PanelButtonCommand:
    case PE_PanelButtonTool:
    case PE_IndicatorCheckBox:
        drawEdge(*painter, *option, QPalette::ButtonText);
        break;
    default:
        break;
    }
}

} // namespace korvale
