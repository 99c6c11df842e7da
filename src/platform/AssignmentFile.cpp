#include "platform/AssignmentFile.h"

#include "platform/SmallFile.h"

#include <QList>

namespace korvale {
namespace {

constexpr qint64 largestFile = 1 << 16;

QByteArray unquoted(QByteArray value) {
    if (value.size() >= 2 && value.startsWith('\'') && value.endsWith('\'')) {
        return value.mid(1, value.size() - 2);
    }
    if (value.size() >= 2 && value.startsWith('"') && value.endsWith('"')) {
        value = value.mid(1, value.size() - 2);
    }
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
        }
        result += value[i];
    }
    return result;
}

} // namespace

std::optional<QString> assignedValueIn(const QByteArray& content, const QByteArray& key) {
    std::optional<QString> found;
    for (const QByteArray& line : content.split('\n')) {
        const QByteArray assignment = line.trimmed();
        if (assignment.startsWith(key + '=')) {
            const QByteArray value = unquoted(assignment.mid(key.size() + 1));
            found = value.isEmpty() ? std::nullopt : std::optional(QString::fromUtf8(value));
        }
    }
    return found;
}

std::optional<QString> assignedValue(const QString& path, const QByteArray& key) {
    const std::optional<QByteArray> content = readSmallFile(path, largestFile);
    return content ? assignedValueIn(*content, key) : std::nullopt;
}

} // namespace korvale
