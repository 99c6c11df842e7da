#include "agent_link/AgentNotificationTable.h"

#include "agent_link/SharedController.h"

namespace korvale {
namespace {

void handOver(AgentNotification code) {
    if (AgentNotificationHandler* controller = sharedController()) {
        controller->HandleAgentNotification(static_cast<std::uint32_t>(code));
    }
}

} // namespace

// clang-format off
void AgentNotification_AgentStarted() { handOver(AgentNotification::AgentStarted); }
void AgentNotification_AgentStopped() { handOver(AgentNotification::AgentStopped); }
void AgentNotification_AgentRunning() { handOver(AgentNotification::AgentRunning); }
void AgentNotification_HalyxConnected() { handOver(AgentNotification::HalyxConnected); }
void AgentNotification_HalyxNotConnected() { handOver(AgentNotification::HalyxNotConnected); }
void AgentNotification_QuillmarConnected() { handOver(AgentNotification::QuillmarConnected); }
void AgentNotification_QuillmarNotConnected() { handOver(AgentNotification::QuillmarNotConnected); }
void AgentNotification_DriverConnected() { handOver(AgentNotification::DriverConnected); }
void AgentNotification_DriverNotConnected() { handOver(AgentNotification::DriverNotConnected); }
void AgentNotification_ConsumerNotification() { handOver(AgentNotification::ConsumerNotification); }
void AgentNotification_ExeBlocked() { handOver(AgentNotification::ExeBlocked); }
void AgentNotification_TimerAggregatedMessage() { handOver(AgentNotification::TimerAggregatedMessage); }
void AgentNotification_ProcessTerminatedMessage() { handOver(AgentNotification::ProcessTerminatedMessage); }
void AgentNotification_ProcessBlockedMessage() { handOver(AgentNotification::ProcessBlockedMessage); }
void AgentNotification_AnalyzerStatus() { handOver(AgentNotification::AnalyzerStatus); }
void AgentNotification_PolicyExpired() { handOver(AgentNotification::PolicyExpired); }
void AgentNotification_PolicyInvalidCompanyId() { handOver(AgentNotification::PolicyInvalidCompanyId); }
void AgentNotification_PolicyInvalidSignature() { handOver(AgentNotification::PolicyInvalidSignature); }
void AgentNotification_BTDScanComplete() { handOver(AgentNotification::BTDScanComplete); }
void AgentNotification_DeviceControlEvent() { handOver(AgentNotification::DeviceControlEvent); }
// clang-format on

} // namespace korvale
