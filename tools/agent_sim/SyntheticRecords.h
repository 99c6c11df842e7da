#pragma once

#include "agent/publish/HostCacheLists.h"
#include "agent_sim/AgentRooms.h"

#include <QString>
#include <QStringList>

namespace korvale::sim {

/// Most records one call makes.
inline constexpr int kMostSynthetic = 1'000'000;

/// Puts `count` records of that kind ("files", "processes", "events", "devices", "all") into the
/// model. The n-th record is always the same. False for an unknown kind.
bool addSyntheticRecords(HostCacheLists& model, int count, const QString& kind);
[[nodiscard]] QStringList syntheticKinds();

} // namespace korvale::sim
