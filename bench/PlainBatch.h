#pragma once

#include <QString>
#include <QVariantMap>
#include <QVector>

namespace korvale::bench {

/// The same batch done plainly: QJsonDocument, a QVariantMap for each row and a QHash of groups.
/// Returns the rows, none for the list of the previous call unless asked for; the tallies are made
/// and thrown away.
[[nodiscard]] QVector<QVariantMap> plainBatch(const QString& path, bool evenIfUnchanged);

} // namespace korvale::bench
