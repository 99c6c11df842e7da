#include "agent_link/AgentTalk.h"

#include "agent_link/Envelope.h"
#include "agent_link/ServiceCommands.h"
#include "agent_link/ServiceNames.h"

#include <utility>

namespace korvale {
namespace {

/// A bus that hangs shall be found out by the limit of the answer, as one that does not answer.
constexpr std::chrono::milliseconds busPatience{5000};
/// A limit that is reached so much too late was not slow to be noticed: the process was stopped.
constexpr std::chrono::milliseconds stopped{2000};

int busLimitMs(std::chrono::milliseconds answerLimit) {
    return static_cast<int>((answerLimit + busPatience).count());
}

} // namespace

AgentTalk::AgentTalk(std::chrono::milliseconds answerLimit, QObject* parent)
    : QObject(parent), m_bus(busLimitMs(answerLimit)), m_answerLimit(answerLimit) {
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &AgentTalk::limitReached);
    connect(&m_bus, &SystemBus::connected, this, &AgentTalk::join);
    connect(&m_bus, &SystemBus::firstAttemptFailed, this,
            [this] { finish(RequestOutcome::NoAgent); });
    connect(&m_bus, &SystemBus::lost, this, [this] {
        m_calls.busLost();
        finish(RequestOutcome::NoAgent);
        Q_EMIT left();
    });
    connect(&m_signals, &OwnerSignals::received, this, &AgentTalk::onSignal);
    connect(&m_calls.owner(), &NameOwner::changed, this, [this](const QString& before) {
        if (!before.isEmpty()) {
            Q_EMIT left();
        }
    });
}

void AgentTalk::join() {
    for (const QString& interface : agentNotificationInterfaces()) {
        // A rule that is not accepted costs only the progress: the files are read all the same.
        (void)m_signals.hear(m_bus.connection(),
                             {QString::fromLatin1(servicePath), interface, {}, {}});
    }
    m_calls.follow(m_bus.connection());
    sendNow();
}

void AgentTalk::request(ServiceCommand command, const QString& value, Answered answered) {
    m_command = command;
    m_value = value;
    m_answered = std::move(answered);
    ++m_number;
    m_sinceAsked.start();
    m_limit.start(m_answerLimit);
    switch (m_bus.state()) {
    case SystemBus::State::Idle:
        m_bus.start();
        break;
    case SystemBus::State::Connected:
        sendNow();
        break;
    case SystemBus::State::FirstAttempt:
        break;
    case SystemBus::State::Absent:
        QMetaObject::invokeMethod(
            this, [this] { finish(RequestOutcome::NoAgent); }, Qt::QueuedConnection);
        break;
    }
}

void AgentTalk::sendNow() {
    if (m_answered) {
        m_calls.call(requestEnvelope(m_command, m_value),
                     [this, number = m_number](const ServiceReply* reply) {
                         if (isOpen(number)) {
                             judge(reply);
                         }
                     });
    }
}

void AgentTalk::judge(const ServiceReply* reply) {
    if (reply == nullptr) {
        judgeFailure();
    } else if (reply->isOk()) {
        finish(RequestOutcome::Accepted);
    } else if (const auto text = reply->text("RESP")) {
        finish(RequestOutcome::Refused, *text);
    } else {
        finish(RequestOutcome::NotUnderstood);
    }
}

/// An error may be an agent's own, or that there is none: only the bus knows.
void AgentTalk::judgeFailure() {
    if (m_bus.state() != SystemBus::State::Connected || !m_bus.connection().isConnected()) {
        finish(RequestOutcome::NoAgent);
        return;
    }
    auto* owner = new NameOwner(QString::fromLatin1(serviceName), this);
    connect(owner, &NameOwner::changed, this,
            [this, owner, number = m_number](const QString&, const QString& now) {
                owner->deleteLater();
                owner->disconnect(this);
                if (isOpen(number)) {
                    finish(now.isEmpty() ? RequestOutcome::NoAgent : RequestOutcome::NotUnderstood);
                }
            });
    owner->follow(m_bus.connection());
}

/// Whoever was stopped (Ctrl+Z, a machine that slept) hears first what was said meanwhile.
void AgentTalk::limitReached() {
    if (m_sinceAsked.hasExpired((m_answerLimit + stopped).count())) {
        m_sinceAsked.start();
        m_limit.start(stopped);
    } else {
        finish(RequestOutcome::NoAnswer);
    }
}

void AgentTalk::finish(RequestOutcome outcome, const QString& text) {
    m_limit.stop();
    if (const Answered answered = std::exchange(m_answered, nullptr)) {
        answered(outcome, text);
    }
}

void AgentTalk::onSignal(const QDBusMessage& message) {
    if (const AgentNotificationRow* const row =
            agentNotificationOf(message.interface(), message.member())) {
        Q_EMIT told(row->code);
    }
}

} // namespace korvale
