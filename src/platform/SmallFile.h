#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace korvale {

/// The whole content of a RegularFile of at most `limit` bytes (settings, /proc), for those who
/// work with a QByteArray.
[[nodiscard]] std::optional<QByteArray> readSmallFile(const QString& path, qint64 limit);
[[nodiscard]] std::optional<QByteArray> readSmallFile(const char* path, qint64 limit);

} // namespace korvale
