#pragma once

namespace korvale {

/// Names of the agent's files in the host cache, exactly as the agent writes them.
namespace HostCacheFile {
inline constexpr char header[] = "header.log";
inline constexpr char fileStates[] = "file_states.log";
inline constexpr char scannerState[] = "scanner_state.log";
inline constexpr char analysisCount[] = "analysis_count.log";
inline constexpr char processStates[] = "process_states.log";
inline constexpr char fileProcessEvents[] = "file_process_events.log";
inline constexpr char externalDevices[] = "external_device_control_events.log";
inline constexpr char exeBlocked[] = "exe_blocked.log";
inline constexpr char processTerminated[] = "process_terminated.log";
inline constexpr char processBlocked[] = "process_blocked.log";
inline constexpr char analyzerStatus[] = "analyzer_status.log";
inline constexpr char consumerNotification[] = "consumer_notification.log";
// Gathered by mask only, and never interpreted. The first is not the process list, on purpose.
inline constexpr char processState[] = "process_state.log";
inline constexpr char quillmarStatus[] = "quillmar_status.log";
inline constexpr char processActionBlocked[] = "process_action_blocked.log";
inline constexpr char halyxHostStatus[] = "halyx_host_status.log";
} // namespace HostCacheFile

} // namespace korvale
