#include "tables/RowsModel.h"

#include "platform/SafeText.h"
#include "tables/CustHeaderView.h"
#include "tables/TableDataSource.h"
#include "tables/ThreatsTableView.h"

#include <algorithm>

namespace korvale {

RowsModel::RowsModel(ThreatsTableView& view) : QAbstractTableModel(&view), m_view(view) {}

void RowsModel::reset() {
    beginResetModel();
    m_rows = 0;
    endResetModel();
}

void RowsModel::reload(int rows) {
    const int staying = std::min(rows, m_rows);
    if (rows > m_rows) {
        beginInsertRows({}, m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows({}, rows, m_rows - 1);
        m_rows = rows;
        endRemoveRows();
    }
    if (staying > 0 && columnCount() > 0) {
        Q_EMIT dataChanged(index(0, 0), index(staying - 1, columnCount() - 1));
    }
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
    if (orientation == Qt::Horizontal) {
        const CustHeaderCell& cell = m_view.header().headerCell(section);
        switch (role) {
        case Qt::DisplayRole:
            return cell.title();
        case Qt::ToolTipRole: // a narrow column shortens its title
            return toolTipMarkup(cell.title());
        case Qt::AccessibleDescriptionRole:
            return cell.sortOrderText();
        default:
            break;
        }
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags RowsModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

} // namespace korvale
