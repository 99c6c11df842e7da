#include "agent_link/AgentNotifications.h"

#include "agent_link/ServiceNames.h"
#include "core/base/Logging.h"
#include "model/Paths.h"
#include "model/Values.h"
#include "platform/Clock.h"
#include "platform/OwnerSignals.h"
#include "platform/SystemBus.h"
#include "platform/Texts.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace korvale {
namespace {

/// Notifications about one file, named by a host-cache file.
struct BlockedFileRow {
    AgentNotification code;
    const char* file;
    const char* member;
    const char* subtitleKey;
};

constexpr std::array blockedFileTable{
    BlockedFileRow{AgentNotification::ExeBlocked, "exe_blocked.log", "BlockedExePath",
                   "NotificationSubtitleExecutionBlock"},
    BlockedFileRow{AgentNotification::ProcessTerminatedMessage, "process_terminated.log",
                   "ProcessTerminated", "NotificationSubtitleProcessTerminated"},
    BlockedFileRow{AgentNotification::ProcessBlockedMessage, "process_blocked.log",
                   "ProcessActionBlocked", "NotificationSubtitleProcessActionBlocked"},
};

/// Notifications whose texts never change.
struct FixedNotificationRow {
    AgentNotification code;
    const char* messageKey;
    const char* subtitleKey;
};

constexpr std::array fixedNotificationTable{
    FixedNotificationRow{AgentNotification::PolicyExpired, "NotificationMessagePolicyExpired",
                         "NotificationSubtitlePolicyExpired"},
    FixedNotificationRow{AgentNotification::PolicyInvalidCompanyId,
                         "NotificationMessagePolicyInvalidCompanyId",
                         "NotificationSubtitlePolicyInvalidCompanyId"},
    FixedNotificationRow{AgentNotification::PolicyInvalidSignature,
                         "NotificationMessagePolicyInvalidSignature",
                         "NotificationSubtitlePolicyInvalidSignature"},
    FixedNotificationRow{AgentNotification::BTDScanComplete, "BTDFinishedScanningMessage",
                         "BTDFinishedScanningTitle"},
};

template <typename Table>
auto rowOf(const Table& table, AgentNotification code) {
    return std::find_if(table.begin(), table.end(),
                        [code](const auto& row) { return row.code == code; });
}

/// A notification's name is an interface and, behind its last dot, a signal.
QStringList observedInterfaces() {
    QStringList interfaces;
    for (const AgentNotificationRow& row : agentNotificationTable) {
        const QString name = QString::fromLatin1(row.name);
        const QString interface = name.left(name.lastIndexOf(u'.'));
        if (!interfaces.contains(interface)) {
            interfaces << interface;
        }
    }
    return interfaces;
}

} // namespace

AgentNotifications::AgentNotifications(AgentNotificationsParts parts, QObject* parent)
    : QObject(parent), m_parts(std::move(parts)) {}

AgentNotifications::~AgentNotifications() = default;

void AgentNotifications::observe(SystemBus& bus, const NameOwner& service) {
    m_signals = std::make_unique<OwnerSignals>(service);
    connect(m_signals.get(), &OwnerSignals::received, this, &AgentNotifications::onSignal);
    connect(&bus, &SystemBus::connected, this, [this, &bus] { addObservers(bus); });
    if (bus.state() == SystemBus::State::Connected) {
        addObservers(bus);
    }
}

void AgentNotifications::addObservers(SystemBus& bus) {
    // One match rule for all signals of an interface: half as many as names, and each has its price
    // at every start.
    for (const QString& interface : observedInterfaces()) {
        const bool heard = m_signals->hear(bus.connection(),
                                           {QString::fromLatin1(servicePath), interface, {}, {}});
        if (!heard) {
            logLine(LogLevel::Warn, "The notifications of %@ cannot be heard.", interface);
        }
    }
}

void AgentNotifications::onSignal(const QDBusMessage& message) {
    const QString name = message.interface() + u'.' + message.member();
    for (const AgentNotificationRow& row : agentNotificationTable) {
        if (name == QLatin1String(row.name)) {
            row.callback();
        }
    }
}

void AgentNotifications::HandleAgentNotification(std::uint32_t code) {
    m_parts.state.lastAgentReportTime = m_parts.clock.now();
    m_parts.state.agentIsAway = false;
    act(static_cast<AgentNotification>(code));
}

void AgentNotifications::act(AgentNotification code) {
    AppState& state = m_parts.state;
    switch (code) {
    case AgentNotification::AgentStarted:
        return agentStarted();
    case AgentNotification::AgentStopped:
        return agentStopped();
    case AgentNotification::AgentRunning:
        return applyRunningIconRule();
    case AgentNotification::HalyxConnected:
    case AgentNotification::HalyxNotConnected:
        state.halyxConnected = code == AgentNotification::HalyxConnected;
        return applyConnectionRule();
    case AgentNotification::QuillmarConnected:
    case AgentNotification::QuillmarNotConnected:
        state.quillmarConnected = code == AgentNotification::QuillmarConnected;
        return applyConnectionRule();
    case AgentNotification::DriverConnected:
        state.driverConnected = true;
        return applyConnectionRule();
    case AgentNotification::DriverNotConnected:
        return driverNotConnected();
    case AgentNotification::TimerAggregatedMessage:
        return m_parts.parseTimerAggregatedMessage();
    case AgentNotification::AnalyzerStatus:
        return readAnalyzerStatus();
    case AgentNotification::ConsumerNotification:
        return sendConsumerNotification();
    default:
        // Device-control events among them: they are read with the aggregated messages.
        sendBlockedFileNotification(code);
        sendFixedNotification(code);
    }
}

void AgentNotifications::agentStarted() {
    m_parts.connectToService();
    m_parts.status.updateStatusMessage(StatusState::Running);
    applyRunningIconRule();
}

void AgentNotifications::agentStopped() {
    m_parts.state.halyxConnected = false;
    m_parts.state.quillmarConnected = false;
    m_parts.state.driverConnected = true; // no driver warning for an agent that is not there
    m_parts.state.statusState = StatusState::NotRunning;
    m_parts.state.agentIsAway = true;
    m_parts.status.updateStatusMessage(StatusState::NotRunning);
    m_parts.icon.setIconDispColor(IconColor::Yellow);
}

void AgentNotifications::driverNotConnected() {
    m_parts.state.driverConnected = false;
    m_parts.status.updateStatusMessage(StatusState::NoDriver);
    m_parts.icon.setIconDispColor(IconColor::Red);
}

void AgentNotifications::applyConnectionRule() {
    const AppState& state = m_parts.state;
    const bool connected = state.halyxConnected || state.quillmarConnected;
    if (!connected) {
        m_parts.status.updateStatusMessage(StatusState::NoNetwork);
    }
    const IconColor wanted = connected ? IconColor::Green : IconColor::Yellow;
    // Red also stands for "no colour yet": such an icon is left alone.
    if (state.curIconDispColor != IconColor::Red && state.curIconDispColor != wanted) {
        m_parts.icon.setIconDispColor(wanted);
    }
}

void AgentNotifications::applyRunningIconRule() {
    const AppState& state = m_parts.state;
    if (state.curIconDispColor == IconColor::Red) {
        return;
    }
    const bool connected = state.halyxConnected || state.quillmarConnected;
    m_parts.icon.setIconDispColor(connected ? IconColor::Green : IconColor::Yellow);
}

std::optional<QString> AgentNotifications::readText(const char* file, const char* member) const {
    const std::optional<JsonValue> content = m_parts.readFile(QString::fromLatin1(file));
    return content ? textOnly((*content)[member]) : std::nullopt;
}

void AgentNotifications::sendBlockedFileNotification(AgentNotification code) {
    const auto* const row = rowOf(blockedFileTable, code);
    if (row == blockedFileTable.end()) {
        return;
    }
    const QString fileName =
        lastPathComponent(readText(row->file, row->member).value_or(QString()));
    if (!fileName.isEmpty()) {
        m_parts.notifications.SendNotification(fileName, localizedText(row->subtitleKey), noImage);
    }
}

void AgentNotifications::sendFixedNotification(AgentNotification code) {
    const auto* const row = rowOf(fixedNotificationTable, code);
    if (row != fixedNotificationTable.end()) {
        m_parts.notifications.SendNotification(localizedText(row->messageKey),
                                               localizedText(row->subtitleKey), noImage);
    }
}

void AgentNotifications::readAnalyzerStatus() {
    AppState& state = m_parts.state;
    const std::optional<QString> file = readText("analyzer_status.log", "CurrentFile");
    state.currentScanItem = file.value_or(QString());
    if (!file) {
        return;
    }
    state.currentScanItemStartTime = m_parts.clock.now();
    m_parts.status.updateStatusMessage(StatusState::Inspecting);
}

void AgentNotifications::sendConsumerNotification() {
    const std::optional<JsonValue> content =
        m_parts.readFile(QStringLiteral("consumer_notification.log"));
    if (!content) {
        return;
    }
    const QString message = textOnly((*content)["ConsumerNotificationMessage"]).value_or(QString());
    if (!message.isEmpty()) {
        m_parts.notifications.SendConsumerNotification(
            message, textOnly((*content)["ConsumerNotificationUrl"]).value_or(QString()));
    }
}

} // namespace korvale
