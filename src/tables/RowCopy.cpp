#include "tables/RowCopy.h"

#include "platform/SafeText.h"

#include <QStringTokenizer>

namespace korvale {
namespace {

QString fieldsOf(const RowList& rows, std::size_t row, std::span<const RowKey> keys) {
    QString fields;
    for (const RowKey key : keys) {
        if (key != keys.front()) {
            fields += u',';
        }
        fields += unbrokenText(rows.text(row, key).value_or(QStringLiteral("(null)")));
    }
    return fields;
}

std::optional<QString> pathsOf(const RowList& rows, std::size_t row, RowKey shown) {
    const std::optional<QString> every = rows.text(row, RowKey::EveryPath);
    return every ? every : rows.text(row, shown);
}

void appendLines(const RowList& rows, std::size_t row, const TableDescription& description,
                 QString& text) {
    const QString fields = fieldsOf(rows, row, description.copyFields);
    if (!description.copyPaths) {
        text.append(fields).append(u'\n');
        return;
    }
    const std::optional<QString> paths = pathsOf(rows, row, *description.copyPaths);
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
            appendLines(rows, static_cast<std::size_t>(row), description, text);
        }
    }
    return text;
}

} // namespace korvale
