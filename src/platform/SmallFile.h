#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace korvale {

/// The whole content of a regular file that is expected to be small (settings, /proc), of at most
/// `limit` bytes. Anything else of that name (a FIFO, device, folder, a file too large) and any
/// failure is no value. Opening never blocks; links are followed.
[[nodiscard]] std::optional<QByteArray> readSmallFile(const QString& path, qint64 limit);
[[nodiscard]] std::optional<QByteArray> readSmallFile(const char* path, qint64 limit);

} // namespace korvale
