#include "shell/PlacedLayout.h"

#include <QStyle>
#include <QWidget>

namespace korvale {

/// One after the other: a layout inside asks to be taken out when it goes.
PlacedLayout::~PlacedLayout() {
    while (!m_items.empty()) {
        const std::unique_ptr<QLayoutItem> item(PlacedLayout::takeAt(0));
    }
}

QLayoutItem* PlacedLayout::itemAt(int index) const {
    const bool isThere = index >= 0 && index < count();
    return isThere ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* PlacedLayout::takeAt(int index) {
    if (itemAt(index) == nullptr) {
        return nullptr;
    }
    QLayoutItem* item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item; // the caller's from now on, as layouts have it
}

int PlacedLayout::heightForWidth(int width) const {
    return place(QRect(0, 0, width, 0), true);
}

void PlacedLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    place(rect, false);
}

void PlacedLayout::put(QLayoutItem& item, const QRect& rect, const QRect& place) const {
    item.setGeometry(QStyle::visualRect(parentWidget()->layoutDirection(), rect, place));
}

} // namespace korvale
