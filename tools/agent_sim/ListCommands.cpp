#include "agent_sim/Agent.h"
#include "agent_sim/CommandHandlers.h"
#include "agent_sim/Publishing.h"
#include "agent_sim/SyntheticRecords.h"
#include "agent_sim/Words.h"

#include <QJsonDocument>

#include <limits>

namespace korvale::sim::list_commands {
namespace {

constexpr int kMostInt = std::numeric_limits<int>::max();

std::optional<int> processState(const QString& word) {
    static const QStringList words{QStringLiteral("alert"), QStringLiteral("ignored"),
                                   QStringLiteral("blocked"), QStringLiteral("terminated")};
    const qsizetype place = words.indexOf(word);
    return place >= 0 ? std::optional(static_cast<int>(place)) : numberIn(word, 0, kMostInt);
}

/// The event that a file's state was left by.
int eventOf(int state) {
    if (state == 0) {
        return threat_event::kRemoved;
    }
    if ((state & file_state::kQuarantined) != 0) {
        return threat_event::kQuarantined;
    }
    return (state & file_state::kWaived) != 0 ? threat_event::kWaived : threat_event::kDetected;
}

/// A number where the text is one; else the text.
QJsonValue scoreOf(const QString& word) {
    bool isNumber = false;
    const double number = word.toDouble(&isNumber);
    return isNumber ? QJsonValue(number) : QJsonValue(word);
}

std::optional<Exploit> exploitOf(const QString& pid, const QString& path, const QString& state,
                                 const QString& count, const QString& type) {
    bool isNumber = false;
    const qint64 number = pid.toLongLong(&isNumber);
    const std::optional<int> stateNumber = processState(state);
    if (!isNumber || !stateNumber) {
        return std::nullopt;
    }
    return Exploit{number, path, *stateNumber, count, type};
}

QString noExploit() {
    return QStringLiteral("PID or STATE cannot be taken");
}

Outcome threatEvent(Agent& agent, const QStringList& arguments) {
    const std::optional<int> state = numberIn(arguments[2], 0, kMostInt);
    const std::optional<int> bits = numberIn(arguments[3], 0, kMostInt);
    if (!state || !bits) {
        return Outcome::error(QStringLiteral("STATE or EVENT cannot be taken"));
    }
    agent.model().addThreatEvent(arguments[1], *state, *bits);
    return publishChange(agent);
}

Outcome exploitEvent(Agent& agent, const QStringList& arguments) {
    const std::optional<Exploit> exploit =
        exploitOf(arguments[1], arguments[2], arguments[3], QString(), arguments[4]);
    if (!exploit) {
        return Outcome::error(noExploit());
    }
    agent.model().addExploitEvent(*exploit);
    return publishChange(agent);
}

Outcome rawEvent(Agent& agent, const QStringList& arguments) {
    const QJsonDocument record = QJsonDocument::fromJson(arguments[2].toUtf8());
    if (!record.isObject()) {
        return Outcome::error(QStringLiteral("not a JSON object (in quotes, \" as \\\")"));
    }
    agent.model().putEvent(arguments[1], record.object());
    return publishChange(agent);
}

} // namespace

Outcome threat(Agent& agent, const QStringList& arguments) {
    const std::optional<int> state = numberIn(arguments[1], 0, kMostInt);
    if (!state) {
        return Outcome::error(noNumber(arguments[1]));
    }
    agent.model().setFile(arguments[0], {*state, arguments[2], scoreOf(arguments.value(3))});
    agent.model().addThreatEvent(arguments[0], *state, eventOf(*state));
    return publishChange(agent);
}

Outcome exploit(Agent& agent, const QStringList& arguments) {
    const std::optional<Exploit> exploit =
        exploitOf(arguments[0], arguments[1], arguments[2], arguments.value(3, QStringLiteral("1")),
                  arguments.value(4, QStringLiteral("1")));
    if (!exploit) {
        return Outcome::error(noExploit());
    }
    agent.model().addExploit(*exploit);
    return publishChange(agent);
}

Outcome event(Agent& agent, const QStringList& arguments) {
    const QString& kind = arguments[0];
    if (kind == QLatin1String("threat") && arguments.size() == 4) {
        return threatEvent(agent, arguments);
    }
    if (kind == QLatin1String("exploit") && arguments.size() == 5) {
        return exploitEvent(agent, arguments);
    }
    if (kind == QLatin1String("raw") && arguments.size() == 3) {
        return rawEvent(agent, arguments);
    }
    return Outcome::error(QStringLiteral(
        "threat PATH STATE EVENT, exploit PID PATH STATE TYPE or raw KEY JSON is needed"));
}

Outcome device(Agent& agent, const QStringList& arguments) {
    agent.model().addDeviceEvent(
        {arguments[0], arguments[1], arguments.value(2), arguments.value(3), arguments.value(4)});
    const QString problem = agent.post(QStringLiteral("com.korvale.devicecontrol.event"));
    return problem.isEmpty() ? publishChange(agent) : Outcome::error(problem);
}

Outcome analysed(Agent& agent, const QStringList& arguments) {
    bool isNumber = false;
    const qint64 number = arguments[0].toLongLong(&isNumber);
    if (!isNumber) {
        return Outcome::error(noNumber(arguments[0]));
    }
    agent.model().setAnalysed(number);
    return publishChange(agent);
}

Outcome synthetic(Agent& agent, const QStringList& arguments) {
    const std::optional<int> count = numberIn(arguments[0], 0, kMostSynthetic);
    if (!count) {
        return Outcome::error(noNumber(arguments[0]));
    }
    if (!addSyntheticRecords(agent.model(), *count, arguments.value(1, QStringLiteral("files")))) {
        return Outcome::error(QStringLiteral("no such kind; there are ") +
                              syntheticKinds().join(u' '));
    }
    return publishChange(agent);
}

Outcome clear(Agent& agent, const QStringList& /*arguments*/) {
    agent.model().clearLists();
    return publishChange(agent);
}

Outcome batch(Agent& agent, const QStringList& arguments) {
    const std::optional<bool> on = onOff(arguments[0]);
    if (!on) {
        return Outcome::error(onOrOff());
    }
    agent.collectChanges(*on);
    return Outcome::ok();
}

Outcome publish(Agent& agent, const QStringList& arguments) {
    if (arguments.isEmpty()) {
        return publishWhenRead(agent);
    }
    bool isNumber = false;
    const std::uint32_t mask = arguments[0].toUInt(&isNumber, 0);
    return isNumber ? publishWhenRead(agent, mask) : Outcome::error(noNumber(arguments[0]));
}

} // namespace korvale::sim::list_commands
