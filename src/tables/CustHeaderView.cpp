#include "tables/CustHeaderView.h"

#include "platform/Texts.h"
#include "tables/Access.h"
#include "tables/Frame.h"
#include "tables/KeyEvents.h"
#include "tables/WindowLook.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionHeader>

#include <algorithm>
#include <utility>

namespace korvale {

CustHeaderView::CustHeaderView(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(true);
    setSectionsMovable(true);
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
        paintFrame(*painter, rect.adjusted(1, 1, -1, -2), QColor(look::tableFocus));
    }
}

void CustHeaderView::keyPressEvent(QKeyEvent* event) {
    const int forth = isRightToLeft() ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        moveFocus(-forth);
        break;
    case Qt::Key_Right:
        moveFocus(forth);
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressFocused();
        break;
    default:
        // The toolkit makes a context menu's event of the Menu key alone.
        if (isContextMenuKey(*event)) {
            showMenu(m_focused, placeOf(m_focused));
        } else {
            event->ignore(); // on to the table; never an item view's own keys
        }
    }
}

void CustHeaderView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const int section = isByKey ? m_focused : logicalIndexAt(event->pos());
    showMenu(section, isByKey ? placeOf(section) : event->globalPos());
}

/// Below that title, on the screen.
QPoint CustHeaderView::placeOf(int section) const {
    return viewport()->mapToGlobal(QPoint(sectionViewportPosition(section), height()));
}

void CustHeaderView::showMenu(int section, QPoint globalPosition) {
    auto* menu = new QMenu(this);
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->setPalette(window()->palette()); // the table's is light in both appearances
    const int place = visualIndex(section);
    const auto addMove = [&](const char* key, int to) {
        QAction* action = menu->addAction(localizedText(key));
        action->setEnabled(place >= 0 && to >= 0 && to < count());
        connect(action, &QAction::triggered, this, [this, place, to] { moveSection(place, to); });
    };
    const int forth = isRightToLeft() ? -1 : 1;
    addMove("HPS_MoveColumnLeft", place - forth);
    addMove("HPS_MoveColumnRight", place + forth);
    menu->addSeparator();
    connect(menu->addAction(localizedText("HPS_ResetOrder")), &QAction::triggered, this,
            &CustHeaderView::resetWanted);
    menu->popup(globalPosition);
}

/// On the screen, whatever order the columns have.
void CustHeaderView::moveFocus(int step) {
    const int place = std::clamp(visualIndex(m_focused) + step, 0, std::max(0, count() - 1));
    const int focused = std::max(0, logicalIndex(place));
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
