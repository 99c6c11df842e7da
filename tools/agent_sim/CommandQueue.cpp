#include "agent_sim/CommandQueue.h"

#include <chrono>
#include <utility>

namespace korvale::sim {
namespace {

constexpr std::chrono::milliseconds kPollPeriod{20};

/// One line of output, whatever the text holds.
QString oneLine(QString text) {
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control) {
            character = u' ';
        }
    }
    return text.trimmed();
}

} // namespace

CommandQueue::CommandQueue(Agent& agent, Print print, QObject* parent)
    : QObject(parent), m_agent(agent), m_print(std::move(print)) {
    m_poll.setInterval(kPollPeriod);
    connect(&m_poll, &QTimer::timeout, this, &CommandQueue::poll);
}

void CommandQueue::add(ParsedLine line) {
    m_lines.push_back(std::move(line));
    if (!m_running) {
        m_running = true;
        QMetaObject::invokeMethod(this, &CommandQueue::runNext, Qt::QueuedConnection);
    }
}

void CommandQueue::runNext() {
    while (!m_lines.empty()) {
        const ParsedLine line = std::move(m_lines.front());
        m_lines.pop_front();
        if (line.isEmpty()) {
            continue;
        }
        m_name = line.command != nullptr ? QString(line.command->name) : QString();
        const bool done =
            conclude(line.command != nullptr ? line.command->run(m_agent, line.arguments)
                                             : Outcome::error(line.problem));
        if (!done) {
            return;
        }
    }
    m_running = false;
    Q_EMIT drained();
}

bool CommandQueue::conclude(const Outcome& outcome) {
    if (outcome.state == Outcome::State::Waiting) {
        m_waiting = outcome;
        m_poll.start();
        return false;
    }
    for (const QString& line : outcome.lines) {
        m_print(line);
    }
    const bool failed = outcome.state == Outcome::State::Error;
    m_failures += failed ? 1 : 0;
    m_print((failed ? QStringLiteral("error ") : QStringLiteral("ok ")) +
            oneLine(m_name + u' ' + outcome.text));
    if (outcome.state == Outcome::State::Quit) {
        Q_EMIT quitRequested();
        return false;
    }
    return true;
}

void CommandQueue::poll() {
    const Outcome outcome = m_waiting.poll();
    if (outcome.state != Outcome::State::Waiting) {
        m_poll.stop();
        if (conclude(outcome)) {
            runNext();
        }
    }
}

} // namespace korvale::sim
