#include "tables/Frame.h"

#include <QPainter>

namespace korvale {

void paintFrame(QPainter& painter, const QRect& rect, const QColor& color, int width) {
    const QRect inner = rect.adjusted(width, width, -width, -width);
    const QRect top(rect.left(), rect.top(), rect.width(), width);
    const QRect left(rect.left(), inner.top(), width, inner.height());
    for (const QRect& side : {top, top.translated(0, rect.height() - width), left,
                              left.translated(rect.width() - width, 0)}) {
        painter.fillRect(side, color);
    }
}

} // namespace korvale
