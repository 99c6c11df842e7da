#include "tables/RowCopy.h"

#include "platform/SafeText.h"

#include <QStringTokenizer>

namespace korvale {
namespace {

QString fieldsOf(const RowBatch& batch, std::size_t index, std::span<const RowKey> keys) {
    QString fields;
    for (const RowKey key : keys) {
        if (key != keys.front()) {
            fields += u',';
        }
        fields += unbrokenText(batch.text(index, key).value_or(QStringLiteral("(null)")));
    }
    return fields;
}

std::optional<QString> pathsOf(const RowBatch& batch, std::size_t index, RowKey shown) {
    const std::optional<QString> every = batch.text(index, RowKey::EveryPath);
    return every ? every : batch.text(index, shown);
}

void appendLines(const RowBatch& batch, std::size_t index, const TableDescription& description,
                 QString& text) {
    const QString fields = fieldsOf(batch, index, description.copyFields);
    if (!description.copyPaths) {
        text.append(fields).append(u'\n');
        return;
    }
    const std::optional<QString> paths = pathsOf(batch, index, *description.copyPaths);
    if (!paths) {
        return;
    }
    for (const QStringView path : QStringTokenizer(*paths, u'\n')) {
        text.append(fields).append(u',').append(unbrokenText(path.toString())).append(u'\n');
    }
}

} // namespace

std::optional<QString> copiedText(const RowList& rows, const TableDescription& description,
                                  const std::optional<RowIndexes>& selection) {
    QString text = description.copyHeader.toString();
    if (!selection) {
        return text;
    }
    if (selection->last() >= 0 && static_cast<std::size_t>(selection->last()) >= rows.size()) {
        return std::nullopt;
    }
    for (const RowIndexes::Range& range : selection->ranges()) {
        for (int row = range.first; row <= range.last; ++row) {
            const RowRef ref = rows.at(static_cast<std::size_t>(row));
            appendLines(*rows.batches()[ref.batch], ref.index, description, text);
        }
    }
    return text;
}

QString copiedRow(const RowBatch& batch, std::size_t index, const TableDescription& description) {
    QString text = description.copyHeader.toString();
    appendLines(batch, index, description, text);
    return text;
}

QString copiedPaths(const RowBatch& batch, std::size_t index) {
    QString text;
    batch.visitPaths(index, [&text](const QString& path) {
        text.append(unbrokenText(path)).append(u'\n');
        return true;
    });
    text.chop(1); // a single path can be pasted as it is
    return text;
}

} // namespace korvale
