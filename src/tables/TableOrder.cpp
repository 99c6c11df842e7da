#include "tables/TableOrder.h"

#include "tables/CustHeaderView.h"
#include "tables/ThreatsTableView.h"

#include <algorithm>

namespace korvale {
namespace {

constexpr QChar descends = u'-';

/// The identifiers as the table has them at first.
QStringList columnsOf(const ThreatsTableView& view) {
    QStringList names;
    for (const TableColumn& column : view.columns()) {
        names << QLatin1String(column.identifier);
    }
    return names;
}

/// The table's own columns where `names` are not all of them.
QStringList arranged(const QStringList& names, const QStringList& own) {
    return std::is_permutation(names.begin(), names.end(), own.begin(), own.end()) ? names : own;
}

SortDescriptors descriptorsOf(const QStringList& sort, const ThreatsTableView& view) {
    const QStringList own = columnsOf(view);
    SortDescriptors descriptors;
    for (const QString& name : sort) {
        const bool ascending = !name.startsWith(descends);
        const auto column = own.indexOf(ascending ? name : name.mid(1));
        if (column < 0) {
            return {};
        }
        const RowKey key = view.columns()[static_cast<std::size_t>(column)].text;
        const bool isTwice = std::ranges::count(descriptors, key, &SortDescriptor::key) > 0;
        if (isTwice) {
            return {};
        }
        descriptors.push_back({key, ascending});
    }
    return descriptors;
}

} // namespace

TableOrder orderOf(const ThreatsTableView& view) {
    const QStringList own = columnsOf(view);
    TableOrder order;
    for (int place = 0; place < own.size(); ++place) {
        order.columns << own[view.header().logicalIndex(place)];
    }
    if (order.columns == own) {
        order.columns.clear();
    }
    for (const SortDescriptor& sorted : view.sortDescriptors()) {
        const auto column = std::ranges::find(view.columns(), sorted.key, &TableColumn::text);
        order.sort << (sorted.ascending ? QString() : QString(descends)) +
                          QLatin1String(column->identifier);
    }
    return order;
}

void applyOrder(ThreatsTableView& view, const TableOrder& order) {
    const QStringList own = columnsOf(view);
    const QStringList wanted = arranged(order.columns, own);
    CustHeaderView& header = view.header();
    for (int place = 0; place < own.size(); ++place) {
        header.moveSection(header.visualIndex(static_cast<int>(own.indexOf(wanted[place]))), place);
    }
    const SortDescriptors descriptors = descriptorsOf(order.sort, view);
    if (descriptors != view.sortDescriptors()) {
        view.setSortDescriptors(descriptors);
    }
}

} // namespace korvale
