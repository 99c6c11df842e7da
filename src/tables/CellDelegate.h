#pragma once

#include <QAbstractItemDelegate>

namespace korvale {

class ThreatsTableView;

/// Paints the cell objects of a table view.
class CellDelegate final : public QAbstractItemDelegate {
    Q_OBJECT

public:
    explicit CellDelegate(ThreatsTableView& view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

private:
    ThreatsTableView& m_view;
};

} // namespace korvale
