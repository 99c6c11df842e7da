#include "shell/LinkButton.h"

#include "tables/WindowLook.h"

#include <QKeyEvent>
#include <QPainter>

namespace korvale {

LinkButton::LinkButton(QWidget* parent) : QToolButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

QSize LinkButton::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(text()) + 2 * look::linkPadding,
            metrics.height() + look::linkPadding};
}

void LinkButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QToolButton::keyPressEvent(event);
    }
}

void LinkButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Link), look::focusRingWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), look::focusRingRadius,
                                look::focusRingRadius);
    }
    const QColor link = palette().color(QPalette::Link);
    const QColor disabled = palette().color(QPalette::Disabled, QPalette::WindowText);
    QFont drawn = font();
    // With high contrast the colour does not tell.
    drawn.setUnderline(isEnabled() && (underMouse() || isDown() || link == disabled));
    painter.setFont(drawn);
    painter.setPen(isEnabled() ? link : disabled);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

} // namespace korvale
