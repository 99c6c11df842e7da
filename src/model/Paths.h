#pragma once

#include <QString>

namespace korvale {

// Parts of a path, read off the text alone. Pure functions.

/// What follows the last slash; trailing slashes do not count. "/" gives "/", "" gives "".
[[nodiscard]] QString lastPathComponent(QStringView path);

/// The path without its last component: "/a" gives "/", "a" gives "".
[[nodiscard]] QString directoryOf(QStringView path);

/// What follows the last dot of the last component; empty when there is no dot, or when it is the
/// component's first or last character.
[[nodiscard]] QString pathExtension(QStringView path);

} // namespace korvale
