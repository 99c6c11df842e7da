#pragma once

#include <QString>

namespace korvale {

/// `absolutePath` with the value of KORVALE_ROOT in front of it, where that environment variable is
/// set (tests and demonstrations); else as it is. For every absolute path read outside the
/// program's resources and the user's home.
[[nodiscard]] QString rootedPath(const QString& absolutePath);

} // namespace korvale
