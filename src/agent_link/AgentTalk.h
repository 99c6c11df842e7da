#pragma once

#include "agent_link/AgentNotificationTable.h"
#include "agent_link/ServiceCalls.h"
#include "agent_link/ServiceCommand.h"
#include "platform/OwnerSignals.h"
#include "platform/SystemBus.h"

#include <QDBusMessage>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>

namespace korvale {

/// What became of a request.
enum class RequestOutcome {
    Accepted,
    Refused,       ///< the agent says no
    NoAgent,       ///< nobody has its name, or there is no bus
    NoAnswer,      ///< it, or the bus, said nothing in time
    NotUnderstood, ///< what came is no reply
};

/// One conversation with the agent for somebody who waits for the answers: a request at a time, and
/// what the agent tells unasked meanwhile. Main thread; nothing here waits.
class AgentTalk final : public QObject {
    Q_OBJECT
public:
    /// `text` is what the agent said, untrusted.
    using Answered = std::function<void(RequestOutcome outcome, const QString& text)>;

    static constexpr std::chrono::seconds longestWait{15};

    explicit AgentTalk(std::chrono::milliseconds answerLimit = longestWait,
                       QObject* parent = nullptr);

    /// Looks for the bus with the first request. `answered` is called once, later. Not before the
    /// previous request was answered; what the agent still says to that one is not heard any more.
    void request(ServiceCommand command, const QString& value, Answered answered);

Q_SIGNALS:
    /// One of the twenty notifications.
    void told(korvale::AgentNotification what);
    /// The agent has ended, or the bus has.
    void left();

private:
    void join();
    void sendNow();
    [[nodiscard]] bool isOpen(int number) const { return m_answered && number == m_number; }
    void judge(const ServiceReply* reply);
    void judgeFailure();
    void limitReached();
    void finish(RequestOutcome outcome, const QString& text = {});
    void onSignal(const QDBusMessage& message);

    SystemBus m_bus;
    ServiceCalls m_calls;
    OwnerSignals m_signals{m_calls.owner()};
    std::chrono::milliseconds m_answerLimit;
    QTimer m_limit;
    QElapsedTimer m_sinceAsked;
    int m_number = 0; ///< of the last request
    ServiceCommand m_command = ServiceCommand::CheckUpdates;
    QString m_value;
    Answered m_answered; ///< while a request is open
};

} // namespace korvale
