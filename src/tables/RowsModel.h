#pragma once

#include <QAbstractTableModel>

namespace korvale {

class ThreatsTableView;

/// The rows of a table view as Qt's item views, selection and accessibility know them. Its row
/// count is that of the last reload, so rows that were replaced since do not show by themselves.
class RowsModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit RowsModel(ThreatsTableView& view);

    /// The columns are others: everything is, and there are no rows.
    void reset();
    /// The rows hold other texts and are as many as said; at the end some come or go. Indexes of
    /// rows that stay remain valid, and with them what the view knows of them.
    void reload(int rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    /// Of a cell in sight what it shows, of any other what it would show.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    ThreatsTableView& m_view;
    int m_rows = 0;
};

} // namespace korvale
