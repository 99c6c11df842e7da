#include "shell/MenuButton.h"

#include "tables/WindowLook.h"

#include <QPainter>

namespace korvale {

MenuButton::MenuButton(QWidget* parent) : QToolButton(parent) {
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

QSize MenuButton::sizeHint() const {
    return {look::menuButtonSide, look::menuButtonSide};
}

void MenuButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (isDown() || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(isDown() ? QPalette::Mid : QPalette::Button));
        painter.drawRoundedRect(face, look::menuCornerRadius, look::menuCornerRadius);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), look::focusRingWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(face, look::menuCornerRadius, look::menuCornerRadius);
    }
    painter.setPen(QPen(palette().color(QPalette::ButtonText), look::menuLineThickness,
                        Qt::SolidLine, Qt::RoundCap));
    const QPointF center = QRectF(rect()).center();
    for (const int line : {-1, 0, 1}) {
        const qreal y = center.y() + line * look::menuLineDistance;
        painter.drawLine(QPointF(center.x() - look::menuLineLength / 2, y),
                         QPointF(center.x() + look::menuLineLength / 2, y));
    }
}

} // namespace korvale
