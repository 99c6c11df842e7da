#include "agent_sim/Agent.h"
#include "agent_sim/CommandHandlers.h"
#include "agent_sim/FileFaults.h"
#include "agent_sim/Words.h"

#include <QJsonDocument>

namespace korvale::sim::fault_commands {
namespace {

constexpr int kLongestDelay = 3'600'000;

} // namespace

Outcome hang(Agent& agent, const QStringList& arguments) {
    const std::optional<bool> on = onOff(arguments[0]);
    if (!on) {
        return Outcome::error(onOrOff());
    }
    agent.faults().hang = *on;
    return Outcome::ok();
}

Outcome replyDelay(Agent& agent, const QStringList& arguments) {
    const std::optional<int> delay = numberIn(arguments[0], 0, kLongestDelay);
    if (!delay) {
        return Outcome::error(noNumber(arguments[0]));
    }
    agent.faults().delayMilliseconds = *delay;
    return Outcome::ok();
}

Outcome setReply(Agent& agent, const QStringList& arguments) {
    const QJsonDocument reply = QJsonDocument::fromJson(arguments[1].toUtf8());
    if (!reply.isObject()) {
        return Outcome::error(QStringLiteral("not a JSON object"));
    }
    agent.faults().replaced.insert(arguments[0], reply.toJson(QJsonDocument::Compact));
    return Outcome::ok();
}

Outcome rawReply(Agent& agent, const QStringList& arguments) {
    agent.faults().replaced.insert(arguments[0], arguments[1].toUtf8());
    return Outcome::ok();
}

Outcome malformedReply(Agent& agent, const QStringList& arguments) {
    const bool off = arguments[0] == QLatin1String("off");
    const FaultyReply fault = faultyReply(arguments[0]);
    if (!off && fault == nullptr) {
        return Outcome::error(QStringLiteral("no such kind; there are ") +
                              faultyReplyKinds().join(u' '));
    }
    agent.faults().malformed = fault;
    return Outcome::ok();
}

Outcome normalReplies(Agent& agent, const QStringList& /*arguments*/) {
    agent.faults().clear();
    return Outcome::ok();
}

Outcome malformedFile(Agent& agent, const QStringList& arguments) {
    return Outcome::of(placeFaultyFile(agent.hostCache(), arguments[0], arguments[1]));
}

Outcome rawFile(Agent& agent, const QStringList& arguments) {
    return agent.hostCache().write(arguments[0], arguments[1].toUtf8())
               ? Outcome::ok()
               : Outcome::error(agent.hostCache().error());
}

} // namespace korvale::sim::fault_commands
