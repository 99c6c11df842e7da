#pragma once

#include "core/StatusOptions.h"

namespace korvale {

/// Asks the running program over the session bus how the machine is, and prints it; returns the
/// exit status. Needs a QCoreApplication and the texts, but no display. A bus or program that says
/// nothing ends the process after five seconds. Starts nothing.
[[nodiscard]] int runStatusCommand(const StatusOptions& options);

/// What "--status" used wrongly prints to standard error; the exit status is then wrongUse.
inline constexpr const char* statusUsage =
    "korvale-ui: use --status [--json | --bar waybar | --bar i3status-rs] [--watch].";
inline constexpr int wrongUse = 64; ///< EX_USAGE of sysexits.h

} // namespace korvale
