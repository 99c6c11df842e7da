#include "shell/ElidedLabel.h"

#include "platform/SafeText.h"
#include "tables/WindowLook.h"

#include <QPainter>
#include <QStyle>

namespace korvale {
ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    const QMargins margins = contentsMargins();
    return {metrics.horizontalAdvance(singleLineText(text())) + 2 + margins.left() +
                margins.right(),
            metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), look::focusRingWidth));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
    const QRect place = contentsRect();
    const QString shown =
        fontMetrics().elidedText(singleLineText(text()), m_elideMode, place.width());
    style()->drawItemText(&painter, place, static_cast<int>(alignment()) | Qt::TextSingleLine,
                          palette(), isEnabled(), shown, foregroundRole());
}

} // namespace korvale
