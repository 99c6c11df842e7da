#include "shell/MenuButton.h"

#include "shell/WindowLook.h"

#include <QPainter>

namespace korvale {
namespace {

constexpr qreal lineLength = 16;
constexpr qreal lineDistance = 5;
constexpr qreal lineThickness = 1.6;
constexpr qreal cornerRadius = 6;

} // namespace

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
        painter.drawRoundedRect(face, cornerRadius, cornerRadius);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(face, cornerRadius, cornerRadius);
    }
    painter.setPen(
        QPen(palette().color(QPalette::ButtonText), lineThickness, Qt::SolidLine, Qt::RoundCap));
    const QPointF center = QRectF(rect()).center();
    for (const int line : {-1, 0, 1}) {
        const qreal y = center.y() + line * lineDistance;
        painter.drawLine(QPointF(center.x() - lineLength / 2, y),
                         QPointF(center.x() + lineLength / 2, y));
    }
}

} // namespace korvale
