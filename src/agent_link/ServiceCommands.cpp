#include "agent_link/ServiceCommands.h"

#include "agent_link/Envelope.h"
#include "core/base/Logging.h"

#include <atomic>
#include <cmath>
#include <utility>

namespace korvale {
namespace {

constexpr int mostSleeps = 15;
/// In seconds: what a bus that does not hang needs at most, which is not worth a sleep less.
constexpr double quickSetUp = 0.1;

/// Any thread: in automation mode the main thread sleeps meanwhile.
void logStatusReply(const ServiceCommandRow& row, const ServiceReply& reply) {
    if (reply.isOk()) {
        logLine(LogLevel::Info, row.successLine, [&reply] { return *reply.text("RESP"); });
    } else {
        logLine(LogLevel::Error, row.failureLine);
    }
}

} // namespace

QVariantMap requestEnvelope(ServiceCommand command, const QString& value) {
    const ServiceCommandRow& row = serviceCommandRow(command);
    RequestMembers members{{QStringLiteral("CMD_"), QString::fromLatin1(row.code)}};
    if (row.valueMember != nullptr) {
        members.emplace(QString::fromLatin1(row.valueMember),
                        row.fixedValue != nullptr ? QString::fromLatin1(row.fixedValue) : value);
    }
    return createXPCRequest(members);
}

ServiceCommands::ServiceCommands(AppState& state, RequestChannel& channel, StatusDisplay& status,
                                 IconDisplay& icon, AutomationMode automation)
    : m_state(state),
      m_channel(channel),
      m_status(status),
      m_icon(icon),
      m_automation(std::move(automation)) {}

void ServiceCommands::forwardFolderScan(const QString& folder) {
    sendUserCommand(ServiceCommand::ForwardFolderScan, folder);
}

void ServiceCommands::scanBackground() {
    sendUserCommand(ServiceCommand::ScanBackground);
}
void ServiceCommands::stopScan() {
    sendUserCommand(ServiceCommand::StopScan);
}
void ServiceCommands::checkUpdates() {
    sendUserCommand(ServiceCommand::CheckUpdates);
}
void ServiceCommands::checkPolicyUpdates() {
    sendUserCommand(ServiceCommand::CheckPolicyUpdates);
}

void ServiceCommands::sendUserCommand(ServiceCommand command, const QString& value) {
    const ServiceCommandRow& row = serviceCommandRow(command);
    const auto handler = [&row](const ServiceReply* reply) {
        if (reply != nullptr) {
            logStatusReply(row, *reply);
        }
    };
    if (m_automation.on) {
        sendAndWait(requestEnvelope(command, value), handler);
    } else {
        m_channel.send(requestEnvelope(command, value), handler);
    }
}

void ServiceCommands::sendAndWait(const QVariantMap& envelope, const ReplyHandler& handler) {
    const double start = m_automation.now ? m_automation.now() : 0;
    std::atomic<bool> completed = false;
    // Declared after the flag, and so gone before it: no handler outlives this function.
    const std::unique_ptr<ReplyQueue> queue =
        m_channel.sendOnPrivateQueue(envelope, [&completed, &handler](const ServiceReply* reply) {
            handler(reply);
            completed = true;
        });
    const double setUp = m_automation.now ? m_automation.now() - start : 0;
    const int passed = setUp > quickSetUp ? static_cast<int>(std::ceil(setUp - quickSetUp)) : 0;
    for (int seconds = passed; !completed && seconds < mostSleeps; ++seconds) {
        m_automation.sleepOneSecond();
    }
    m_automation.terminate();
}

void ServiceCommands::readLogLevel(int checkedPosition, LogLevelApplied applied) {
    request(ServiceCommand::GetLogLevel,
            [this, checkedPosition, applied = std::move(applied)](const ServiceReply* reply) {
                if (reply == nullptr) {
                    return;
                }
                const std::int32_t level = reply->integer("VALU");
                if (level == checkedPosition) {
                    return;
                }
                m_state.currentLogLevel = level;
                applied(checkedPosition, level);
            });
}

void ServiceCommands::logging(int position, LogLevelApplied applied) {
    if (position == m_state.currentLogLevel) {
        return;
    }
    m_channel.send(requestEnvelope(ServiceCommand::SetLogLevel, QString::number(position)),
                   [this, position, applied = std::move(applied)](const ServiceReply* reply) {
                       if (reply == nullptr || !reply->isOk()) {
                           return;
                       }
                       const std::int32_t previous =
                           std::exchange(m_state.currentLogLevel, position);
                       applied(previous, position);
                   });
}

void ServiceCommands::checkDriverConnection() {
    request(ServiceCommand::GetDriverState, [this](const ServiceReply* reply) {
        // Only the agent's notification ever sets the driver back to connected.
        if (reply == nullptr || reply->text("VALU") != QStringLiteral("0")) {
            return;
        }
        m_status.updateStatusMessage(StatusState::NoDriver);
        m_icon.setIconDispColor(IconColor::Red);
        m_state.driverConnected = false;
    });
}

void ServiceCommands::getSondarVersion() {
    request(ServiceCommand::GetSondarVersion, [this](const ServiceReply* reply) {
        if (reply == nullptr) {
            return;
        }
        const std::optional<QString> version = reply->text("VALU");
        if (!version) {
            m_state.sondarVersionNumberString = QString();
        } else if (reply->isOk()) {
            m_state.sondarVersionNumberString = *version;
        }
    });
}

void ServiceCommands::request(ServiceCommand command, ReplyHandler handler) {
    const std::uint32_t life = m_channel.serviceLife();
    const auto [asked, isFirst] = m_unanswered.try_emplace(command, life);
    if (!isFirst && asked->second == life) {
        return;
    }
    asked->second = life;
    m_channel.send(requestEnvelope(command),
                   [this, command, life, handler = std::move(handler)](const ServiceReply* reply) {
                       const auto open = m_unanswered.find(command);
                       if (open != m_unanswered.end() && open->second == life) {
                           m_unanswered.erase(open);
                       }
                       handler(reply);
                   });
}

} // namespace korvale
