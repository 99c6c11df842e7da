#include "tables/CellDelegate.h"

#include "tables/SafeText.h"
#include "tables/ThreatsTableView.h"

#include <QPainter>

namespace korvale {
namespace {

// Light enough for black, red and orange text.
constexpr QRgb selectedActive = 0xFFC7DDFA;
constexpr QRgb selectedInactive = 0xFFDDE1E6;
constexpr int margins = 20;

} // namespace

CellDelegate::CellDelegate(ThreatsTableView& view) : QAbstractItemDelegate(&view), m_view(view) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    if (option.state.testFlag(QStyle::State_Selected)) {
        const bool active = option.state.testFlag(QStyle::State_Active);
        painter->fillRect(option.rect, QColor(active ? selectedActive : selectedInactive));
    }
    if (const CellView* cell = m_view.visibleCell(index.row(), index.column())) {
        cell->draw(*painter, option.rect, option.direction);
    }
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString text = singleLineText(index.data(Qt::DisplayRole).toString());
    return {option.fontMetrics.horizontalAdvance(text) + margins, m_view.heightOfRows()};
}

} // namespace korvale
