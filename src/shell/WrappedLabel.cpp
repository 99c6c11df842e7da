#include "shell/WrappedLabel.h"

#include "tables/WindowLook.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <cmath>

namespace korvale {
namespace {

constexpr int ringRoom = look::linkPadding; ///< on each side, for the ring of the focus

} // namespace

WrappedLabel::WrappedLabel(const QString& text, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setText(text);
    setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

/// The height of the text on lines of that width.
int WrappedLabel::layOut(QTextLayout& layout, int width) const {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft));
    layout.setTextOption(option);
    layout.setFont(font());
    layout.setText(QString(text()).replace(u'\n', QChar::LineSeparator));
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width - 2 * ringRoom);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return static_cast<int>(std::ceil(height)) + 2 * ringRoom;
}

int WrappedLabel::heightForWidth(int width) const {
    QTextLayout layout;
    return layOut(layout, width);
}

QSize WrappedLabel::sizeHint() const {
    return {look::notificationsWidth, heightForWidth(look::notificationsWidth)};
}

QSize WrappedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void WrappedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), look::focusRingWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), look::focusRingRadius,
                                look::focusRingRadius);
    }
    painter.setPen(palette().color(foregroundRole()));
    QTextLayout layout;
    layOut(layout, width());
    layout.draw(&painter, QPointF(ringRoom, ringRoom));
}

} // namespace korvale
