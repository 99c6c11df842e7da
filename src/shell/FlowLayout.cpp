#include "shell/FlowLayout.h"

#include <QGuiApplication>
#include <QStyle>

#include <algorithm>

namespace korvale {

QLayoutItem* FlowLayout::itemAt(int index) const {
    const bool isThere = index >= 0 && index < count();
    return isThere ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (itemAt(index) == nullptr) {
        return nullptr;
    }
    QLayoutItem* item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item; // the caller's from now on, as layouts have it
}

int FlowLayout::heightForWidth(int width) const {
    return place(QRect(0, 0, width, 0), true);
}

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

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    place(rect, false);
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
            const QRect place(next, size);
            item->setGeometry(QStyle::visualRect(QGuiApplication::layoutDirection(), rect, place));
        }
        next.rx() += size.width() + m_spacing;
        rowHeight = std::max(rowHeight, size.height());
    }
    return next.y() + rowHeight - rect.top();
}

} // namespace korvale
