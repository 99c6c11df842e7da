#include "PlainBatch.h"

#include "model/StateVocabulary.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <utility>

namespace korvale::bench {

namespace {

struct Group {
    QStringList paths;
    QString name;
    QString state;
    QJsonValue id;
    QJsonValue score;
};

QVariantMap rowOf(const Group& group) {
    return {{QStringLiteral("File"), group.name},
            {QStringLiteral("File_ToolTip"), group.paths.join(QStringLiteral("\n\n"))},
            {QStringLiteral("Category"), group.state},
            {QStringLiteral("Found"), QString::number(group.paths.size())},
            {QStringLiteral("ID"), group.id.toVariant()},
            {QStringLiteral("Score"), group.score.toVariant()}};
}

} // namespace

QVector<QVariantMap> plainBatch(const QString& path, bool evenIfUnchanged) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QJsonObject list = QJsonDocument::fromJson(file.readAll()).object();
    // Compared with the previous list by its compact form, whose members are sorted.
    static std::size_t lastChecksum = 0;
    const std::size_t checksum = qHash(QJsonDocument(list).toJson(QJsonDocument::Compact));
    if (checksum == std::exchange(lastChecksum, checksum) && !evenIfUnchanged) {
        return {};
    }
    QHash<QString, Group> groups;
    QStringList order;
    std::array<qint64, 16> tallies{};
    for (auto record = list.begin(); record != list.end(); ++record) {
        const QJsonObject members = record.value().toObject();
        const int state = members.value(QLatin1String("State")).toInt() & ~16;
        if (state == 0) {
            continue;
        }
        ++tallies[static_cast<std::size_t>(state & 15)];
        const QString key = QString::number(state) + members.value(QLatin1String("ID")).toString();
        Group& group = groups[key];
        if (group.paths.isEmpty()) {
            order << key;
            group.name = QFileInfo(record.key()).fileName().toLower();
            group.state = stateStringFromValue(static_cast<std::uint32_t>(state));
            group.id = members.value(QLatin1String("ID"));
            group.score = members.value(QLatin1String("Score"));
        }
        group.paths << record.key();
    }
    QVector<QVariantMap> rows;
    rows.reserve(order.size());
    for (const QString& key : order) {
        rows << rowOf(groups.value(key));
    }
    return rows;
}

} // namespace korvale::bench
