#pragma once

#include "agent_sim/CommandInterpreter.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>

namespace korvale::sim {

class Agent;

/// Runs the lines of one source (standard input, a scenario) one after the other; a command that
/// waits holds up its own source only.
class CommandQueue : public QObject {
    Q_OBJECT
public:
    using Print = std::function<void(const QString& line)>;

    /// `agent` must outlive this object.
    CommandQueue(Agent& agent, Print print, QObject* parent = nullptr);

    void add(ParsedLine line);
    [[nodiscard]] int failures() const { return m_failures; }

Q_SIGNALS:
    void quitRequested();
    /// Every line so far was run.
    void drained();

private:
    void runNext();
    void poll();
    /// False when the command goes on.
    bool conclude(const Outcome& outcome);

    Agent& m_agent;
    Print m_print;
    std::deque<ParsedLine> m_lines;
    QString m_name; ///< of the present command
    Outcome m_waiting;
    QTimer m_poll;
    int m_failures = 0;
    bool m_running = false;
};

} // namespace korvale::sim
