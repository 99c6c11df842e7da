#include "tables/CustHeaderView.h"

#include "tables/WindowLook.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionHeader>

#include <algorithm>
#include <utility>

namespace korvale {

CustHeaderView::CustHeaderView(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setStretchLastSection(true);
    setMinimumSectionSize(look::smallestColumn);
    setFocusPolicy(Qt::TabFocus);
}

void CustHeaderView::setHeaderCell(int section, CustHeaderCell cell) {
    const auto index = static_cast<std::size_t>(section);
    if (index >= m_cells.size()) {
        m_cells.resize(index + 1);
    }
    m_cells[index] = std::move(cell);
    viewport()->update();
}

const CustHeaderCell& CustHeaderView::headerCell(int section) const {
    static const CustHeaderCell none;
    const auto index = static_cast<std::size_t>(section);
    return section >= 0 && index < m_cells.size() ? m_cells[index] : none;
}

void CustHeaderView::setSortIndicator(int section, std::optional<bool> ascending) {
    CustHeaderCell cell = headerCell(section);
    cell.setSortIndicator(ascending);
    setHeaderCell(section, std::move(cell));
}

QSize CustHeaderView::sizeHint() const {
    return {QHeaderView::sizeHint().width(), fontMetrics().height() + look::headerPadding};
}

void CustHeaderView::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const {
    QStyleOptionHeader option;
    initStyleOptionForIndex(&option, logicalIndex);
    const bool pressed = option.state.testFlag(QStyle::State_Sunken);
    painter->setLayoutDirection(layoutDirection());
    headerCell(logicalIndex).drawWithFrame(*painter, rect, pressed);
    if (hasFocus() && logicalIndex == m_focused) {
        painter->setPen(QColor(look::tableFocus));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(rect.adjusted(1, 1, -2, -3));
    }
}

void CustHeaderView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        focusSection(m_focused - 1);
        break;
    case Qt::Key_Right:
        focusSection(m_focused + 1);
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT sectionClicked(m_focused);
        break;
    default:
        event->ignore(); // on to the table; never an item view's own keys
    }
}

void CustHeaderView::focusSection(int section) {
    m_focused = std::clamp(section, 0, std::max(0, count() - 1));
    viewport()->update();
}

void CustHeaderView::focusInEvent(QFocusEvent* /*event*/) {
    viewport()->update();
}

void CustHeaderView::focusOutEvent(QFocusEvent* /*event*/) {
    viewport()->update();
}

} // namespace korvale
