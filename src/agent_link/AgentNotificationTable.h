#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

namespace korvale {

// All notifications with code and name on the bus, in the order in which the observers are added.
// 17 and 18 were never given.
// clang-format off
#define KORVALE_AGENT_NOTIFICATIONS(ROW) \
    ROW(AgentStarted, 0, "com.korvale.agent.started") \
    ROW(AgentStopped, 1, "com.korvale.agent.stopped") \
    ROW(AgentRunning, 2, "com.korvale.agent.running") \
    ROW(HalyxConnected, 3, "com.korvale.halyx.connected") \
    ROW(HalyxNotConnected, 4, "com.korvale.halyx.notconnected") \
    ROW(QuillmarConnected, 5, "com.korvale.quillmar.connected") \
    ROW(QuillmarNotConnected, 6, "com.korvale.quillmar.notconnected") \
    ROW(DriverConnected, 15, "com.korvale.driver.connected") \
    ROW(DriverNotConnected, 16, "com.korvale.driver.notconnected") \
    ROW(ConsumerNotification, 19, "com.korvale.consumer_notification") \
    ROW(ExeBlocked, 7, "com.korvale.exe.blocked") \
    ROW(TimerAggregatedMessage, 8, "com.korvale.timer.aggregated_messages") \
    ROW(ProcessTerminatedMessage, 9, "com.korvale.process.terminated") \
    ROW(ProcessBlockedMessage, 10, "com.korvale.process.blocked") \
    ROW(AnalyzerStatus, 11, "com.korvale.analyzerstatus_messages") \
    ROW(PolicyExpired, 12, "com.korvale.policy.expired") \
    ROW(PolicyInvalidCompanyId, 13, "com.korvale.policy.invalidcompanyid") \
    ROW(PolicyInvalidSignature, 14, "com.korvale.policy.invalidsignature") \
    ROW(BTDScanComplete, 20, "com.korvale.btdscancomplete") \
    ROW(DeviceControlEvent, 21, "com.korvale.devicecontrol.event")
// clang-format on

/// The code each notification is mapped to.
enum class AgentNotification : std::uint32_t {
#define KORVALE_CODE(notification, code, name) notification = (code),
    KORVALE_AGENT_NOTIFICATIONS(KORVALE_CODE)
#undef KORVALE_CODE
};

/// Each, as AgentNotification_AgentStarted, hands its fixed code to the shared controller; without
/// one it does nothing.
using AgentNotificationCallback = void (*)();

#define KORVALE_CALLBACK(notification, code, name) void AgentNotification_##notification();
KORVALE_AGENT_NOTIFICATIONS(KORVALE_CALLBACK)
#undef KORVALE_CALLBACK

struct AgentNotificationRow {
    const char* name;
    AgentNotificationCallback callback;
    AgentNotification code;
};

/// In the order in which the observers are added.
inline constexpr std::array agentNotificationTable{
#define KORVALE_TABLE_ROW(notification, code, name)                                                \
    AgentNotificationRow{name, AgentNotification_##notification, AgentNotification::notification},
    KORVALE_AGENT_NOTIFICATIONS(KORVALE_TABLE_ROW)
#undef KORVALE_TABLE_ROW
};

/// A notification's name is an interface and, behind its last dot, a signal. Null: none of them.
[[nodiscard]] const AgentNotificationRow* agentNotificationOf(const QString& interface,
                                                              const QString& signal);
/// Each once.
[[nodiscard]] QStringList agentNotificationInterfaces();

} // namespace korvale
