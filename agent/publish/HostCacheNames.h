#pragma once

#include <QString>

#include <cstdint>

namespace korvale::agent {

/// Bits of "MessageMask" in "header.log".
namespace bit {
inline constexpr std::uint32_t kFileStates = 1;
inline constexpr std::uint32_t kScannerState = 2;
inline constexpr std::uint32_t kAnalysisCount = 4;
inline constexpr std::uint32_t kProcesses = 16;
inline constexpr std::uint32_t kExeBlocked = 32;
inline constexpr std::uint32_t kQuillmarStatus = 64;
inline constexpr std::uint32_t kProcessTerminated = 128;
inline constexpr std::uint32_t kProcessActionBlocked = 256;
inline constexpr std::uint32_t kHalyxHostStatus = 512;
inline constexpr std::uint32_t kConsumerNotification = 1024;
inline constexpr std::uint32_t kDeviceEvents = 2048;
} // namespace bit

/// The bit that announces a change of the host-cache file `name`; 0 for a file that has none.
/// "file_process_events.log" has no bit of its own and rides on the process bit.
[[nodiscard]] std::uint32_t maskBitOfFile(const QString& name);

} // namespace korvale::agent
