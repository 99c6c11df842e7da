#include "tables/RowsModel.h"

#include "tables/CustHeaderView.h"
#include "tables/TableDataSource.h"
#include "tables/ThreatsTableView.h"

namespace korvale {

RowsModel::RowsModel(ThreatsTableView& view) : QAbstractTableModel(&view), view_(view) {}

void RowsModel::reload(int rows) {
    beginResetModel();
    rows_ = rows;
    endResetModel();
}

int RowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int RowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(view_.columns().size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
    const bool isText = role == Qt::DisplayRole;
    const bool isToolTip = role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole;
    if (!index.isValid() || (!isText && !isToolTip)) {
        return {};
    }
    if (const CellView* cell = view_.visibleCell(index.row(), index.column())) {
        return isText ? cell->text() : cell->toolTip();
    }
    const TableDataSource* source = view_.dataSource();
    if (source == nullptr) {
        return {};
    }
    const auto column = static_cast<std::size_t>(index.column());
    const QLatin1String identifier(view_.columns()[column].identifier);
    return (isText ? source->cellText(identifier, index.row())
                   : source->cellToolTip(identifier, index.row()))
        .value_or(QString());
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        return view_.header().headerCell(section).title();
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags RowsModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

} // namespace korvale
