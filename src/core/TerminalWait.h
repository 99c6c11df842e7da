#pragma once

#include "agent_link/AgentNotificationTable.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace korvale {

/// What a terminal command waits for once the agent has said yes. Looks every half second, and
/// whenever the agent tells something. Main thread.
class TerminalWait : public QObject {
    Q_OBJECT
public:
    TerminalWait();

    /// The agent has said yes.
    void begin();
    /// The agent tells something, perhaps before begin().
    virtual void told(AgentNotification what) = 0;
    /// It has ended, or the bus has: the answer to the wait is not to be had any more.
    void agentLeft();

Q_SIGNALS:
    /// Once, with the exit status and a text key to complain with, where there is one.
    void ended(int status, const char* complaint);

protected:
    using Moment = std::chrono::milliseconds;

    virtual void accepted() = 0;
    virtual void look() = 0;
    /// Since the wait was made.
    [[nodiscard]] Moment now() const { return Moment(m_clock.elapsed()); }
    [[nodiscard]] bool hasBegun() const { return m_hasBegun; }
    void end(int status, const char* complaint = nullptr);

private:
    void tick();

    QElapsedTimer m_clock;
    Moment m_lastTick{0};
    QTimer m_timer;
    bool m_hasBegun = false;
    bool m_hasEnded = false;
};

} // namespace korvale
