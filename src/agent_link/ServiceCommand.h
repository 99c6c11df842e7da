#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvale {

/// Every request the program makes of the agent service.
enum class ServiceCommand : std::uint8_t {
    ForwardFolderScan,
    ScanBackground,
    StopScan,
    CheckUpdates,
    CheckPolicyUpdates,
    GetLogLevel,
    SetLogLevel,
    GetDriverState,
    GetSondarVersion,
    GetCustomName,
    GetPolicy,
    GetPolicyUpdateTime,
};

/// One command on the wire and in the log.
struct ServiceCommandRow {
    ServiceCommand command;
    const char* code;        ///< the "CMD_" member
    const char* valueMember; ///< the other request member; nullptr: none
    const char* fixedValue;  ///< what that member always holds; nullptr: the sender gives it
    const char* successLine; ///< user commands only, else nullptr
    const char* failureLine;
};

// clang-format off
inline constexpr std::array serviceCommandTable{
    ServiceCommandRow{ServiceCommand::ForwardFolderScan, "SCAN", "START", nullptr,
                      "Service returned '%@' for forwardFolderScan.",
                      "Service returned bad status for forwardFolderScan."},
    ServiceCommandRow{ServiceCommand::ScanBackground, "SCAN", "START", " ",
                      "Service returned '%@' for scanBackground.",
                      "Service returned bad status for scanBackground."},
    ServiceCommandRow{ServiceCommand::StopScan, "SCAN", "STOP", " ",
                      "Service returned '%@' for stopScan.",
                      "Service returned bad status for stopScan."},
    ServiceCommandRow{ServiceCommand::CheckUpdates, "CHKU", nullptr, nullptr,
                      "Service returned '%@' for checkUpdates.",
                      "Service returned bad status for checkUpdates."},
    ServiceCommandRow{ServiceCommand::CheckPolicyUpdates, "PLYU", nullptr, nullptr,
                      "Service returned '%@' for checkPolicyUpdates.",
                      "Service returned bad status for checkPolicyUpdates."},
    ServiceCommandRow{ServiceCommand::GetLogLevel, "GLOG", nullptr, nullptr, nullptr, nullptr},
    ServiceCommandRow{ServiceCommand::SetLogLevel, "SLOG", "VALU", nullptr, nullptr, nullptr},
    ServiceCommandRow{ServiceCommand::GetDriverState, "GDRV", nullptr, nullptr, nullptr, nullptr},
    ServiceCommandRow{ServiceCommand::GetSondarVersion, "GOPV", nullptr, nullptr, nullptr, nullptr},
    ServiceCommandRow{ServiceCommand::GetCustomName, "CUST", nullptr, nullptr, nullptr, nullptr},
    ServiceCommandRow{ServiceCommand::GetPolicy, "POLY", nullptr, nullptr, nullptr, nullptr},
    ServiceCommandRow{ServiceCommand::GetPolicyUpdateTime, "GPUT", nullptr, nullptr, nullptr, nullptr},
};
// clang-format on

[[nodiscard]] constexpr const ServiceCommandRow& serviceCommandRow(ServiceCommand command) {
    return serviceCommandTable[static_cast<std::size_t>(command)];
}

} // namespace korvale
