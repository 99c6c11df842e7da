#pragma once

#include "tables/CustHeaderCell.h"

#include <QHeaderView>

#include <vector>

namespace korvale {

/// The row of column titles, drawn by its header cells. With the focus, the arrow keys choose a
/// title and Space or Return does what a click does.
class CustHeaderView : public QHeaderView {
    Q_OBJECT

public:
    explicit CustHeaderView(QWidget* parent = nullptr);

    void setHeaderCell(int section, CustHeaderCell cell);
    /// An empty cell for a section that got none.
    [[nodiscard]] const CustHeaderCell& headerCell(int section) const;
    void setSortIndicator(int section, std::optional<bool> ascending);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void focusSection(int section);

    std::vector<CustHeaderCell> m_cells;
    int m_focused = 0;
};

} // namespace korvale
