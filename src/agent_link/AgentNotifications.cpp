#include "agent_link/AgentNotifications.h"

#include "agent_link/ServiceNames.h"
#include "core/base/Logging.h"
#include "model/HostCacheFiles.h"
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
struct AgentNotifications::Action {
    AgentNotification code;
    void (AgentNotifications::*act)(const Action&);
    std::array<const char*, 3> texts{}; ///< file, member and key, or the keys of two texts
};

const AgentNotifications::Action* AgentNotifications::actionOf(AgentNotification code) {
    using N = AgentNotification;
    using Self = AgentNotifications;
    // Device-control events have no action of their own: they are read with the batches.
    static constexpr std::array actions{
        Action{N::AgentStarted, &Self::agentStarted},
        Action{N::AgentStopped, &Self::agentStopped},
        Action{N::AgentRunning, &Self::agentRunning},
        Action{N::HalyxConnected, &Self::halyxChanged},
        Action{N::HalyxNotConnected, &Self::halyxChanged},
        Action{N::QuillmarConnected, &Self::quillmarChanged},
        Action{N::QuillmarNotConnected, &Self::quillmarChanged},
        Action{N::DriverConnected, &Self::driverConnected},
        Action{N::DriverNotConnected, &Self::driverNotConnected},
        Action{N::ConsumerNotification, &Self::sendConsumerNotification},
        Action{N::ExeBlocked,
               &Self::sendBlockedFileNotification,
               {HostCacheFile::exeBlocked, "BlockedExePath", "NotificationSubtitleExecutionBlock"}},
        Action{N::TimerAggregatedMessage, &Self::parseBatch},
        Action{N::ProcessTerminatedMessage,
               &Self::sendBlockedFileNotification,
               {HostCacheFile::processTerminated, "ProcessTerminated",
                "NotificationSubtitleProcessTerminated"}},
        Action{N::ProcessBlockedMessage,
               &Self::sendBlockedFileNotification,
               {HostCacheFile::processBlocked, "ProcessActionBlocked",
                "NotificationSubtitleProcessActionBlocked"}},
        Action{N::AnalyzerStatus, &Self::readAnalyzerStatus},
        Action{N::PolicyExpired,
               &Self::sendFixedNotification,
               {"NotificationMessagePolicyExpired", "NotificationSubtitlePolicyExpired"}},
        Action{N::PolicyInvalidCompanyId,
               &Self::sendFixedNotification,
               {"NotificationMessagePolicyInvalidCompanyId",
                "NotificationSubtitlePolicyInvalidCompanyId"}},
        Action{N::PolicyInvalidSignature,
               &Self::sendFixedNotification,
               {"NotificationMessagePolicyInvalidSignature",
                "NotificationSubtitlePolicyInvalidSignature"}},
        Action{N::BTDScanComplete,
               &Self::backgroundScanEnded,
               {"BTDFinishedScanningMessage", "BTDFinishedScanningTitle"}},
    };
    const auto* const found = std::find_if(actions.begin(), actions.end(),
                                           [code](const Action& row) { return row.code == code; });
    return found == actions.end() ? nullptr : found;
}

AgentNotifications::AgentNotifications(AgentNotificationsParts parts, QObject* parent)
    : QObject(parent), m_parts(std::move(parts)) {
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &AgentNotifications::handleNext);
}

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
    for (const QString& interface : agentNotificationInterfaces()) {
        const bool heard = m_signals->hear(bus.connection(),
                                           {QString::fromLatin1(servicePath), interface, {}, {}});
        if (!heard) {
            logLine(LogLevel::Warn, "The notifications of %@ cannot be heard.", interface);
        }
    }
}

void AgentNotifications::onSignal(const QDBusMessage& message) {
    if (const AgentNotificationRow* const row =
            agentNotificationOf(message.interface(), message.member())) {
        enqueue(*row);
    }
}

void AgentNotifications::enqueue(const AgentNotificationRow& row) {
    const auto place = m_waiting.insert(m_waiting.end(), &row);
    if (row.code == AgentNotification::TimerAggregatedMessage) {
        if (m_batch != m_waiting.end()) {
            m_waiting.erase(m_batch);
        }
        m_batch = place;
    }
    if (!m_next.isActive()) {
        m_next.start(0);
    }
}

void AgentNotifications::handleNext() {
    if (m_waiting.begin() == m_batch) {
        m_batch = m_waiting.end();
    }
    const AgentNotificationRow& row = *m_waiting.front();
    m_waiting.pop_front();
    if (!m_waiting.empty()) {
        m_next.start(0);
    }
    row.callback();
}

void AgentNotifications::HandleAgentNotification(std::uint32_t code) {
    m_parts.state.lastAgentReportTime = m_parts.clock.now();
    m_parts.state.agentIsAway = false;
    if (const Action* const action = actionOf(static_cast<AgentNotification>(code))) {
        (this->*action->act)(*action);
    }
}

void AgentNotifications::agentStarted(const Action& /*action*/) {
    m_parts.connectToService();
    m_parts.status.updateStatusMessage(StatusState::Running);
    applyRunningIconRule();
}

void AgentNotifications::agentStopped(const Action& /*action*/) {
    m_parts.state.halyxConnected = false;
    m_parts.state.quillmarConnected = false;
    m_parts.state.driverConnected = true; // no driver warning for an agent that is not there
    m_parts.state.statusState = StatusState::NotRunning;
    m_parts.state.agentIsAway = true;
    m_parts.status.updateStatusMessage(StatusState::NotRunning);
    m_parts.icon.setIconDispColor(IconColor::Yellow);
}

void AgentNotifications::agentRunning(const Action& /*action*/) {
    applyRunningIconRule();
}

void AgentNotifications::halyxChanged(const Action& action) {
    m_parts.state.halyxConnected = action.code == AgentNotification::HalyxConnected;
    applyConnectionRule();
}

void AgentNotifications::quillmarChanged(const Action& action) {
    m_parts.state.quillmarConnected = action.code == AgentNotification::QuillmarConnected;
    applyConnectionRule();
}

void AgentNotifications::driverConnected(const Action& /*action*/) {
    m_parts.state.driverConnected = true;
    applyConnectionRule();
}

void AgentNotifications::driverNotConnected(const Action& /*action*/) {
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

void AgentNotifications::sendBlockedFileNotification(const Action& action) {
    const auto [file, member, subtitleKey] = action.texts;
    const QString fileName = lastPathComponent(readText(file, member).value_or(QString()));
    if (!fileName.isEmpty()) {
        m_parts.notifications.SendNotification(fileName, localizedText(subtitleKey), noImage);
    }
}

void AgentNotifications::sendFixedNotification(const Action& action) {
    m_parts.notifications.SendNotification(localizedText(action.texts[0]),
                                           localizedText(action.texts[1]), noImage);
}

void AgentNotifications::backgroundScanEnded(const Action& action) {
    m_parts.state.lastScanEnd = m_parts.clock.localTime();
    sendFixedNotification(action);
}

void AgentNotifications::parseBatch(const Action& /*action*/) {
    m_parts.parseTimerAggregatedMessage();
}

void AgentNotifications::readAnalyzerStatus(const Action& /*action*/) {
    AppState& state = m_parts.state;
    const std::optional<QString> file = readText(HostCacheFile::analyzerStatus, "CurrentFile");
    state.currentScanItem = file.value_or(QString());
    if (!file) {
        return;
    }
    state.currentScanItemStartTime = m_parts.clock.now();
    m_parts.status.updateStatusMessage(StatusState::Inspecting);
}

void AgentNotifications::sendConsumerNotification(const Action& /*action*/) {
    const std::optional<JsonValue> content =
        m_parts.readFile(QLatin1String(HostCacheFile::consumerNotification));
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
