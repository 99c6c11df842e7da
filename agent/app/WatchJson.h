#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace korvale::agent {

class Watch;

/// "watch" of the agent's status: the file systems, and how each is watched.
[[nodiscard]] QJsonArray watchList(const Watch& watch);
/// "watch_counts" of the agent's status.
[[nodiscard]] QJsonObject watchCounts(const Watch& watch);
/// "watched" and "rule" for an absolute path.
[[nodiscard]] QJsonObject watchRule(const Watch& watch, const std::string& path);

} // namespace korvale::agent
