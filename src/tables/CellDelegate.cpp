#include "tables/CellDelegate.h"

#include "platform/SafeText.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QPainter>

namespace korvale {

CellDelegate::CellDelegate(ThreatsTableView& view) : QAbstractItemDelegate(&view), m_view(view) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    if (option.state.testFlag(QStyle::State_Selected)) {
        const bool active = option.state.testFlag(QStyle::State_Active);
        painter->fillRect(option.rect,
                          QColor(active ? look::selectedActive : look::selectedInactive));
    }
    if (const CellView* cell = m_view.visibleCell(index.row(), index.column())) {
        cell->draw(*painter, option.rect, option.direction);
    }
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString text = singleLineText(index.data(Qt::DisplayRole).toString());
    return {option.fontMetrics.horizontalAdvance(text) + look::fittedMargin, m_view.heightOfRows()};
}

} // namespace korvale
