#pragma once

#include <array>
#include <cstdint>

namespace korvale {

/// The code each notification is mapped to. 17 and 18 were never given.
enum class AgentNotification : std::uint32_t {
    AgentStarted = 0,
    AgentStopped = 1,
    AgentRunning = 2,
    HalyxConnected = 3,
    HalyxNotConnected = 4,
    QuillmarConnected = 5,
    QuillmarNotConnected = 6,
    ExeBlocked = 7,
    TimerAggregatedMessage = 8,
    ProcessTerminatedMessage = 9,
    ProcessBlockedMessage = 10,
    AnalyzerStatus = 11,
    PolicyExpired = 12,
    PolicyInvalidCompanyId = 13,
    PolicyInvalidSignature = 14,
    DriverConnected = 15,
    DriverNotConnected = 16,
    ConsumerNotification = 19,
    BTDScanComplete = 20,
    DeviceControlEvent = 21,
};

/// Each hands its fixed code to the shared controller; without one it does nothing.
using AgentNotificationCallback = void (*)();

void AgentNotification_AgentStarted();
void AgentNotification_AgentStopped();
void AgentNotification_AgentRunning();
void AgentNotification_HalyxConnected();
void AgentNotification_HalyxNotConnected();
void AgentNotification_QuillmarConnected();
void AgentNotification_QuillmarNotConnected();
void AgentNotification_DriverConnected();
void AgentNotification_DriverNotConnected();
void AgentNotification_ConsumerNotification();
void AgentNotification_ExeBlocked();
void AgentNotification_TimerAggregatedMessage();
void AgentNotification_ProcessTerminatedMessage();
void AgentNotification_ProcessBlockedMessage();
void AgentNotification_AnalyzerStatus();
void AgentNotification_PolicyExpired();
void AgentNotification_PolicyInvalidCompanyId();
void AgentNotification_PolicyInvalidSignature();
void AgentNotification_BTDScanComplete();
void AgentNotification_DeviceControlEvent();

struct AgentNotificationRow {
    const char* name;
    AgentNotificationCallback callback;
    AgentNotification code;
};

/// In the order in which the observers are added.
// clang-format off
inline constexpr std::array agentNotificationTable{
    AgentNotificationRow{"com.korvale.agent.started", AgentNotification_AgentStarted, AgentNotification::AgentStarted},
    AgentNotificationRow{"com.korvale.agent.stopped", AgentNotification_AgentStopped, AgentNotification::AgentStopped},
    AgentNotificationRow{"com.korvale.agent.running", AgentNotification_AgentRunning, AgentNotification::AgentRunning},
    AgentNotificationRow{"com.korvale.halyx.connected", AgentNotification_HalyxConnected, AgentNotification::HalyxConnected},
    AgentNotificationRow{"com.korvale.halyx.notconnected", AgentNotification_HalyxNotConnected, AgentNotification::HalyxNotConnected},
    AgentNotificationRow{"com.korvale.quillmar.connected", AgentNotification_QuillmarConnected, AgentNotification::QuillmarConnected},
    AgentNotificationRow{"com.korvale.quillmar.notconnected", AgentNotification_QuillmarNotConnected, AgentNotification::QuillmarNotConnected},
    AgentNotificationRow{"com.korvale.driver.connected", AgentNotification_DriverConnected, AgentNotification::DriverConnected},
    AgentNotificationRow{"com.korvale.driver.notconnected", AgentNotification_DriverNotConnected, AgentNotification::DriverNotConnected},
    AgentNotificationRow{"com.korvale.consumer_notification", AgentNotification_ConsumerNotification, AgentNotification::ConsumerNotification},
    AgentNotificationRow{"com.korvale.exe.blocked", AgentNotification_ExeBlocked, AgentNotification::ExeBlocked},
    AgentNotificationRow{"com.korvale.timer.aggregated_messages", AgentNotification_TimerAggregatedMessage, AgentNotification::TimerAggregatedMessage},
    AgentNotificationRow{"com.korvale.process.terminated", AgentNotification_ProcessTerminatedMessage, AgentNotification::ProcessTerminatedMessage},
    AgentNotificationRow{"com.korvale.process.blocked", AgentNotification_ProcessBlockedMessage, AgentNotification::ProcessBlockedMessage},
    AgentNotificationRow{"com.korvale.analyzerstatus_messages", AgentNotification_AnalyzerStatus, AgentNotification::AnalyzerStatus},
    AgentNotificationRow{"com.korvale.policy.expired", AgentNotification_PolicyExpired, AgentNotification::PolicyExpired},
    AgentNotificationRow{"com.korvale.policy.invalidcompanyid", AgentNotification_PolicyInvalidCompanyId, AgentNotification::PolicyInvalidCompanyId},
    AgentNotificationRow{"com.korvale.policy.invalidsignature", AgentNotification_PolicyInvalidSignature, AgentNotification::PolicyInvalidSignature},
    AgentNotificationRow{"com.korvale.btdscancomplete", AgentNotification_BTDScanComplete, AgentNotification::BTDScanComplete},
    AgentNotificationRow{"com.korvale.devicecontrol.event", AgentNotification_DeviceControlEvent, AgentNotification::DeviceControlEvent},
};
// clang-format on

} // namespace korvale
