#pragma once

#include "agent/publish/HostCacheWriter.h"
#include "agent_sim/AgentRooms.h"

#include <QString>
#include <QStringList>

namespace korvale::sim {

/// Puts a file that an agent should never write in the place of host-cache file `name`. An empty
/// text, or why it did not work.
[[nodiscard]] QString placeFaultyFile(HostCacheWriter& writer, const QString& name,
                                      const QString& kind);
[[nodiscard]] QStringList faultyFileKinds();

} // namespace korvale::sim
