#pragma once

#include "tables/CustHeaderCell.h"

#include <QHeaderView>

#include <vector>

namespace korvale {

/// The row of column titles, drawn by its header cells. With the focus, the arrow keys choose a
/// title and Space or Return does what a click does. A screen reader hears the title and its order.
/// Columns are moved with the mouse, or by the context menu of their titles.
class CustHeaderView : public QHeaderView {
    Q_OBJECT

public:
    explicit CustHeaderView(QWidget* parent = nullptr);

    void setHeaderCell(int section, CustHeaderCell cell);
    /// An empty cell for a section that got none.
    [[nodiscard]] const CustHeaderCell& headerCell(int section) const;
    void setSortIndicator(int section, std::optional<bool> ascending);

    /// The title that keys work on, with its order: "When, sorted ascending". Empty without titles.
    [[nodiscard]] QString focusedTitle() const;
    /// What a click on that title does; nothing without titles.
    void pressFocused();

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// Keys have come to that title.
    void sectionFocused(int section);
    /// Columns and rows shall stand as they did at first.
    void resetWanted();

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void moveFocus(int step);
    void showMenu(int section, QPoint globalPosition);
    void tellReaders();
    [[nodiscard]] QPoint placeOf(int section) const;

    std::vector<CustHeaderCell> m_cells;
    int m_focused = 0;
};

} // namespace korvale
