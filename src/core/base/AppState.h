#pragma once

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <optional>

namespace korvale {

/// What the status line says; stored as given, also for values without a name here.
enum class StatusState : std::uint32_t {
    NotRunning = 0,
    NoNetwork = 2,
    Inspecting = 3,
    UpdaterMessage = 4,
    Running = 5,
    NoDriver = 6,
};

/// Colour of the status item; a stored Red also means that no colour has been set yet.
/// Every other value is accepted, shown green and stored as given.
enum class IconColor : std::int64_t { Red = 0, Yellow = 1, Green = 2 };

/// Identifiers of the tabs (the order on screen is Threats, Exploits, Events, External devices).
enum class TabIdentifier : std::int32_t {
    Threats = 1,
    Exploits = 2,
    ExternalDevices = 3,
    Events = 4
};

/// What the agent's list behind a table has told: nothing yet (it is missing), what it holds, or
/// that it is there and cannot be read.
enum class ListNews { NotRead, Read, Unreadable };

/// All state of the program that is not inside a table: one instance, owned by AppDelegate, read
/// and written on the main thread only. Moments are seconds of Clock::now(); "never yet" is no
/// value.
struct AppState {
    // What the agent last said of its connections.
    bool halyxConnected = false;    ///< management console
    bool quillmarConnected = false; ///< cloud analysis
    bool driverConnected = true;    ///< kernel component; no warning until the agent reports one

    // Whether "nothing was found" would be known.
    bool agentIsAway = true; ///< not on the bus, stopped by its own word, or silent for too long
    ListNews header = ListNews::NotRead;
    ListNews fileThreats = ListNews::NotRead;
    ListNews processThreats = ListNews::NotRead;
    ListNews events = ListNews::NotRead;
    ListNews externalDevices = ListNews::NotRead;

    // Notifications and policy.
    bool showNotifications = false;
    bool policyShowNotifications = false;
    bool showNotificationsChanged = false;
    bool allowCheckForPolicyUpdate = true;
    QString policyName;           ///< at first the text of "DefaultPolicyName"
    QString policyMode;           ///< at first the text of "DefaultPolicyMode"
    QString policyLastUpdateTime; ///< as the agent words it

    // Life of the program and of the agent.
    bool justStart = true; ///< until the end of applicationDidFinishLaunching
    std::optional<double> lastStatusReportTime;
    std::optional<double> lastAgentReportTime; ///< set when AppDelegate is constructed
    std::int32_t currentLogLevel = -1;         ///< the agent's; -1 while unknown
    QString sondarVersionNumberString;         ///< companion product
    QString customName;                        ///< device name; at first the host's name

    // Status line and icon.
    StatusState statusState = StatusState::NotRunning;
    IconColor curIconDispColor = IconColor::Red;
    QString currentScanItem; ///< file being analysed; null when the agent named none
    std::optional<double> currentScanItemStartTime;
    QDateTime lastScanEnd; ///< wall clock, when the agent said it; invalid: not yet in this run
    QString updateStatus;  ///< decrypted updater message; null when there is none

    // Counters, signed as they may fall below zero.
    TabIdentifier activeTabIndex = TabIdentifier::Threats;
    std::int64_t analyzedCount = 0;
    std::int64_t threatQuarantineCount = 0;
    std::int64_t threatDetectCount = 0;
    std::int64_t threatWaiveCount = 0;
    std::int64_t abnormalQuarantineCount = 0;
    std::int64_t abnormalDetectCount = 0;
    std::int64_t abnormalWaiveCount = 0;
    std::int64_t quarantineCount = 0;
    std::int64_t waiveCount = 0;
    std::int64_t exploitAttempt = 0;
    std::int64_t newExploitCount = 0;
    std::int64_t newThreatCount = 0;
    std::int64_t externalDevicesCount = 0;
    std::int64_t eventCount = 0;
};

} // namespace korvale
