#pragma once

#include <QHeaderView>

namespace korvale {

/// The vertical header that QTableView insists on, hidden and without a section for any row.
class RowlessHeader final : public QHeaderView {
    Q_OBJECT

public:
    explicit RowlessHeader(QWidget* parent) : QHeaderView(Qt::Vertical, parent) { hide(); }
    void setModel(QAbstractItemModel* /*model*/) override {}
    void setSelectionModel(QItemSelectionModel* /*model*/) override {}
};

} // namespace korvale
