#pragma once

#include <array>
#include <string_view>

/// What korvale-agentctl and the agent say to each other; docs/agent-control.md has it with
/// examples. Every method takes one text (a JSON object: the arguments) and answers one text (a
/// JSON object: "ok", then the answer, or "code" and "error").
namespace korvale::agent::control {

inline constexpr std::string_view kService = "com.korvale.agent_server";
inline constexpr std::string_view kObject = "/com/korvale/agent_server";
inline constexpr std::string_view kInterface = "com.korvale.agent_control";

/// What a caller who is not root needs polkit's consent to.
enum class Task { View, Scan, ManageThreats };

struct Method {
    std::string_view name;
    Task task;
};

inline constexpr std::array kMethods{
    Method{"Status", Task::View},
    Method{"Threats", Task::View},
    Method{"Quarantine", Task::ManageThreats},
    Method{"Restore", Task::ManageThreats},
    Method{"Waive", Task::ManageThreats},
    Method{"Delete", Task::ManageThreats},
    Method{"Scan", Task::Scan},
    Method{"StopScan", Task::Scan},
    Method{"Devices", Task::View},
    Method{"Policy", Task::View},
    Method{"Why", Task::View},
};

/// "code" of an answer whose "ok" is false.
inline constexpr std::string_view kRefused = "refused";         ///< no consent
inline constexpr std::string_view kBadArguments = "arguments";  ///< not as documented
inline constexpr std::string_view kUnknown = "unknown";         ///< no such threat, path or scan
inline constexpr std::string_view kFailed = "failed";           ///< it was tried
inline constexpr std::string_view kUnavailable = "unavailable"; ///< this agent cannot do it

} // namespace korvale::agent::control
