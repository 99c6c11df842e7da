#include "tables/CustHeaderView.h"

#include "tables/Access.h"
#include "tables/WindowLook.h"

#include <QAccessible>
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
    installAccess();
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
    const bool isNews = cell.sortIndicator() != ascending;
    cell.setSortIndicator(ascending);
    setHeaderCell(section, std::move(cell));
    if (isNews && section == m_focused) {
        tellReaders();
    }
}

QString CustHeaderView::focusedTitle() const {
    const CustHeaderCell& cell = headerCell(m_focused);
    const QString order = cell.sortOrderText();
    return order.isEmpty() ? cell.title() : cell.title() + QLatin1String(", ") + order;
}

void CustHeaderView::pressFocused() {
    if (m_focused < count()) {
        Q_EMIT sectionClicked(m_focused);
    }
}

void CustHeaderView::tellReaders() {
    QAccessibleEvent event(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
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
    const int forth = isRightToLeft() ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        focusSection(m_focused - forth);
        break;
    case Qt::Key_Right:
        focusSection(m_focused + forth);
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressFocused();
        break;
    default:
        event->ignore(); // on to the table; never an item view's own keys
    }
}

void CustHeaderView::focusSection(int section) {
    const int focused = std::clamp(section, 0, std::max(0, count() - 1));
    if (std::exchange(m_focused, focused) != focused) {
        viewport()->update();
        tellReaders();
    }
    Q_EMIT sectionFocused(m_focused);
}

void CustHeaderView::focusInEvent(QFocusEvent* /*event*/) {
    viewport()->update();
    Q_EMIT sectionFocused(m_focused);
}

void CustHeaderView::focusOutEvent(QFocusEvent* /*event*/) {
    viewport()->update();
}

} // namespace korvale
