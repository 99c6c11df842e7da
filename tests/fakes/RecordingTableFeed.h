#pragma once

#include "model/TableFeeds.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace korvale::fakes {

/// A table that writes down in `calls`, which several may share, what it is told: "name load 2",
/// "name load nothing", "name add 3", "name update". Keeps the batch it got last.
class RecordingTableFeed final : public TableFeed {
public:
    RecordingTableFeed(QString name, QStringList& calls)
        : m_name(std::move(name)), m_calls(calls) {}

    void loadData(RowBatchPtr batch) override { keep(QStringLiteral("load"), std::move(batch)); }
    void addData(RowBatchPtr batch) override { keep(QStringLiteral("add"), std::move(batch)); }
    void updateView() override { m_calls << m_name + QStringLiteral(" update"); }

    /// The texts of one row of the last batch, missing ones as "-".
    [[nodiscard]] QStringList row(std::size_t index, const std::vector<RowKey>& keys) const {
        QStringList texts;
        for (const RowKey key : keys) {
            texts << rows->text(index, key).value_or(QStringLiteral("-"));
        }
        return texts;
    }

    RowBatchPtr rows;

private:
    void keep(const QString& how, RowBatchPtr batch) {
        rows = std::move(batch);
        m_calls << QStringLiteral("%1 %2 %3")
                       .arg(m_name, how,
                            rows ? QString::number(rows->size()) : QStringLiteral("nothing"));
    }

    QString m_name;
    QStringList& m_calls;
};

} // namespace korvale::fakes
