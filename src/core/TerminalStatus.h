#pragma once

namespace korvale {

/// Exit status of a terminal command.
namespace TerminalStatus {
inline constexpr int good = 0;
inline constexpr int found = 1;   ///< the scan did
inline constexpr int refused = 2; ///< by the agent, or used wrongly
inline constexpr int noAgent = 3;
inline constexpr int noAnswer = 4;
inline constexpr int interrupted = 128; ///< and the number of the signal
} // namespace TerminalStatus

} // namespace korvale
