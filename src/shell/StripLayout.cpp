#include "shell/StripLayout.h"

#include <QWidget>

#include <algorithm>
#include <iterator>
#include <utility>

namespace korvale {

struct StripLayout::Cell {
    QLayoutItem* item;
    Group group;
    int width;
};

void StripLayout::add(Group group, QWidget& widget) {
    m_group = group;
    addWidget(&widget);
}

void StripLayout::add(Group group, QLayout& layout) {
    m_group = group;
    addChildLayout(&layout);
    addItem(&layout);
}

void StripLayout::addItem(QLayoutItem* item) {
    m_groups.push_back(m_group);
    PlacedLayout::addItem(item);
}

QLayoutItem* StripLayout::takeAt(int index) {
    QLayoutItem* item = PlacedLayout::takeAt(index);
    if (item != nullptr) {
        m_groups.erase(m_groups.begin() + index);
    }
    return item;
}

QSize StripLayout::sizeHint() const {
    QSize size(-spacing(), 0);
    for (const auto& item : m_items) {
        if (!item->isEmpty()) {
            const QSize hint = item->sizeHint();
            size = {size.width() + spacing() + hint.width(),
                    std::max(size.height(), hint.height())};
        }
    }
    return size.expandedTo({0, 0});
}

QSize StripLayout::minimumSize() const {
    return {0, sizeHint().height()};
}

StripLayout::Row StripLayout::cells(Group group) const {
    Row cells;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        QLayoutItem& item = *m_items[i];
        if (m_groups[i] == group && !item.isEmpty()) {
            const bool gives = group == Group::Controls;
            cells.push_back({&item, group, (gives ? item.minimumSize() : item.sizeHint()).width()});
        }
    }
    return cells;
}

/// With the space behind it; what has no width needs none.
int StripLayout::stepOf(const Cell& cell) const {
    return cell.width > 0 ? cell.width + spacing() : 0;
}

int StripLayout::widthOf(const Row& row) const {
    int width = -spacing();
    for (const Cell& cell : row) {
        width += stepOf(cell);
    }
    return std::max(width, 0);
}

/// As many beside each other as there is room for. What is wider than a row has one of its own.
std::vector<StripLayout::Row> StripLayout::wrapped(const Row& cells, int width) const {
    std::vector<Row> rows;
    for (Cell cell : cells) {
        cell.width = std::min(cell.width, width);
        if (rows.empty() || widthOf(rows.back()) + spacing() + cell.width > width) {
            rows.emplace_back();
        }
        rows.back().push_back(cell);
    }
    return rows;
}

std::vector<StripLayout::Row> StripLayout::rows(int width) const {
    const Row spare = cells(Group::Spare);
    const Row controls = cells(Group::Controls);
    Row all = cells(Group::Said);
    const Row said = all;
    std::copy(spare.begin(), spare.end(), std::back_inserter(all));
    std::copy(controls.begin(), controls.end(), std::back_inserter(all));
    if (widthOf(all) <= width) {
        return {all};
    }
    std::vector<Row> rows;
    if (widthOf(controls) <= width) {
        rows = wrapped(said, width);
        rows.push_back(controls);
    } else {
        all = said;
        std::copy(controls.begin(), controls.end(), std::back_inserter(all));
        rows = wrapped(all, width);
    }
    for (const Cell& cell : spare) {
        addSpare(rows, cell, width);
    }
    return rows;
}

/// To the first row that has room for all of it, else to that with most. A few letters of it would
/// say nothing: then it has no place.
void StripLayout::addSpare(std::vector<Row>& rows, const Cell& spare, int width) const {
    const auto room = [&](const Row& row) {
        return std::clamp(width - widthOf(row) - spacing(), 0, spare.width);
    };
    const auto row = std::max_element(rows.begin(), rows.end(),
                                      [&room](auto& a, auto& b) { return room(a) < room(b); });
    if (row != rows.end()) {
        const auto next = std::find_if(row->begin(), row->end(), [](const Cell& cell) {
            return cell.group == Group::Controls;
        });
        const int most = room(*row);
        row->insert(next, {spare.item, spare.group, 2 * most >= spare.width ? most : 0});
    }
}

void StripLayout::placeRow(Row row, const QRect& rect, const QRect& place) const {
    int room = place.width() - widthOf(row);
    for (Cell& cell : row) {
        const int most = cell.group == Group::Controls ? cell.item->maximumSize().width() : 0;
        const int more = std::clamp(most - cell.width, 0, std::max(room, 0));
        cell.width += more;
        room -= more;
    }
    int left = place.left();
    for (const Cell& cell : row) {
        if (cell.group != Group::Said) {
            left += std::exchange(room, 0); // the rest is between what is said and the others
        }
        put(*cell.item, rect, QRect(left, place.top(), cell.width, place.height()));
        left += stepOf(cell);
    }
}

int StripLayout::place(const QRect& rect, bool tried) const {
    QRect next(rect.left(), rect.top() - m_rowSpacing, rect.width(), 0);
    for (const Row& row : rows(rect.width())) {
        next.translate(0, next.height() + m_rowSpacing);
        next.setHeight(0);
        for (const Cell& cell : row) {
            next.setHeight(std::max(next.height(), cell.item->sizeHint().height()));
        }
        if (!tried) {
            placeRow(row, rect, next);
        }
    }
    return next.bottom() + 1 - rect.top();
}

} // namespace korvale
