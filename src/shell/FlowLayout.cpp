#include "shell/FlowLayout.h"

#include <algorithm>

namespace korvale {

QSize FlowLayout::sizeHint() const {
    QSize size(-m_spacing, 0);
    for (const auto& item : m_items) {
        const QSize hint = item->sizeHint();
        size = {size.width() + m_spacing + hint.width(), std::max(size.height(), hint.height())};
    }
    return size.expandedTo({0, 0});
}

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const auto& item : m_items) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

int FlowLayout::place(const QRect& rect, bool tried) const {
    QPoint next = rect.topLeft();
    int rowHeight = 0;
    for (const auto& item : m_items) {
        const QSize size = item->sizeHint();
        if (next.x() > rect.left() && next.x() + size.width() > rect.right() + 1) {
            next = {rect.left(), next.y() + rowHeight};
            rowHeight = 0;
        }
        if (!tried) {
            put(*item, rect, QRect(next, size));
        }
        next.rx() += size.width() + m_spacing;
        rowHeight = std::max(rowHeight, size.height());
    }
    return next.y() + rowHeight - rect.top();
}

} // namespace korvale
