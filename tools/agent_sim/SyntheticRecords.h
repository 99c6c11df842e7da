#pragma once

#include <QString>
#include <QStringList>

namespace korvale::sim {

class AgentModel;

/// Most records one call makes.
inline constexpr int kMostSynthetic = 1'000'000;

/// Puts `count` records of that kind ("files", "processes", "events", "devices", "all") into the
/// model. The n-th record is always the same. False for an unknown kind.
bool addSyntheticRecords(AgentModel& model, int count, const QString& kind);
[[nodiscard]] QStringList syntheticKinds();

} // namespace korvale::sim
