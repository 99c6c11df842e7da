#pragma once

#include "shell/PlacedLayout.h"

namespace korvale {

/// What the answer strip says, and its controls: on one row where all of it fits, else below each
/// other, in as many rows as it takes that nothing is shortened. Only the spare item adds no row:
/// it gets what is left over in one of them, if that is half of what it wants or more.
class StripLayout final : public PlacedLayout {
public:
    enum class Group {
        Said,     ///< from the leading edge, as wide as they want to be
        Spare,    ///< one at most; between the others, where there is most room
        Controls, ///< at the trailing edge, from their least to their greatest width
    };

    explicit StripLayout(int rowSpacing) : m_rowSpacing(rowSpacing) {}

    /// In the order of the groups.
    void add(Group group, QWidget& widget);
    /// The layout becomes part of this one.
    void add(Group group, QLayout& layout);

    void addItem(QLayoutItem* item) override;
    QLayoutItem* takeAt(int index) override;
    /// All items in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// The strip never widens the window.
    [[nodiscard]] QSize minimumSize() const override;

private:
    struct Cell;
    using Row = std::vector<Cell>;

    /// Those of a group that are shown, at their least width.
    [[nodiscard]] Row cells(Group group) const;
    [[nodiscard]] int stepOf(const Cell& cell) const;
    [[nodiscard]] int widthOf(const Row& row) const;
    [[nodiscard]] std::vector<Row> wrapped(const Row& cells, int width) const;
    [[nodiscard]] std::vector<Row> rows(int width) const;
    void addSpare(std::vector<Row>& rows, const Cell& spare, int width) const;
    void placeRow(Row row, const QRect& rect, const QRect& place) const;
    int place(const QRect& rect, bool tried) const override;

    std::vector<Group> m_groups; ///< of each item
    Group m_group = Group::Said; ///< of the next one
    int m_rowSpacing;
};

} // namespace korvale
