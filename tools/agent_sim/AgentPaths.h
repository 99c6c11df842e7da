#pragma once

#include <QString>

/// Where the agent keeps things. Every folder begins with the value of KORVALE_ROOT, where that is
/// set.
namespace korvale::sim {

[[nodiscard]] QString hostCacheFolder();
[[nodiscard]] QString updaterStatusFolder();
/// Where quarantined files go unless the command line names another folder.
[[nodiscard]] QString defaultQuarantineFolder();

} // namespace korvale::sim
