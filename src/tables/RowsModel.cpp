#include "tables/RowsModel.h"

#include "tables/CustHeaderView.h"
#include "tables/TableDataSource.h"
#include "tables/ThreatsTableView.h"

namespace korvale {

RowsModel::RowsModel(ThreatsTableView& view) : QAbstractTableModel(&view), m_view(view) {}

void RowsModel::reload(int rows) {
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

int RowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int RowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_view.columns().size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
    const bool isText = role == Qt::DisplayRole;
    const bool isToolTip = role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole;
    if (!index.isValid() || (!isText && !isToolTip)) {
        return {};
    }
    if (const CellView* cell = m_view.visibleCell(index.row(), index.column())) {
        return isText ? cell->text() : cell->toolTip();
    }
    const TableDataSource* source = m_view.dataSource();
    if (source == nullptr) {
        return {};
    }
    const auto column = static_cast<std::size_t>(index.column());
    const QLatin1String identifier(m_view.columns()[column].identifier);
    return (isText ? source->cellText(identifier, index.row())
                   : source->cellToolTip(identifier, index.row()))
        .value_or(QString());
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        return m_view.header().headerCell(section).title();
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags RowsModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

} // namespace korvale
