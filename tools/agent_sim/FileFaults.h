#pragma once

#include <QString>
#include <QStringList>

namespace korvale::sim {

class HostCacheWriter;

/// Puts a file that an agent should never write in the place of host-cache file `name`. An empty
/// text, or why it did not work.
[[nodiscard]] QString placeFaultyFile(HostCacheWriter& writer, const QString& name,
                                      const QString& kind);
[[nodiscard]] QStringList faultyFileKinds();

} // namespace korvale::sim
