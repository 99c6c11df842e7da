#pragma once

#include <QByteArray>
#include <QString>

namespace korvale {

/// Replaces the file at `path` whole, or leaves it as it is; links are followed. The file is for
/// its owner alone (mode 0600), as are the folders that are made for it (0700), whatever the umask.
/// False when it could not be written, or when something else stands there (a device, a folder).
/// Any thread.
[[nodiscard]] bool writePrivateFile(const QString& path, const QByteArray& content);

} // namespace korvale
