#include "agent_sim/Agent.h"
#include "agent_sim/CommandHandlers.h"
#include "agent_sim/CommandTable.h"
#include "agent_sim/Words.h"

#include <QDeadlineTimer>
#include <QJsonDocument>

#include <array>
#include <chrono>
#include <cmath>

namespace korvale::sim::setting_commands {
namespace {

constexpr double kLongestWait = 86'400;
/// No command waits for ever: a driver that went away must not leave the agent behind.
constexpr std::chrono::seconds kPatience{60};

struct TextSetting {
    QLatin1String name;
    QString AgentSettings::*value;
};

constexpr std::array kTextSettings{
    TextSetting{QLatin1String("device-name"), &AgentSettings::deviceName},
    TextSetting{QLatin1String("companion-version"), &AgentSettings::companionVersion},
    TextSetting{QLatin1String("policy-updated"), &AgentSettings::policyUpdated},
    TextSetting{QLatin1String("resp"), &AgentSettings::status},
};

struct PolicyProblem {
    QLatin1String name;
    QLatin1String notification;
};

constexpr std::array kPolicyProblems{
    PolicyProblem{QLatin1String("expired"), QLatin1String("com.korvale.policy.expired")},
    PolicyProblem{QLatin1String("invalid-company"),
                  QLatin1String("com.korvale.policy.invalidcompanyid")},
    PolicyProblem{QLatin1String("invalid-signature"),
                  QLatin1String("com.korvale.policy.invalidsignature")},
};

std::optional<QDeadlineTimer> deadline(const QString& seconds) {
    bool isNumber = false;
    const double value = seconds.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value) || value < 0 || value > kLongestWait) {
        return std::nullopt;
    }
    return QDeadlineTimer(static_cast<qint64>(value * 1000), Qt::PreciseTimer);
}

} // namespace

Outcome policy(Agent& agent, const QStringList& arguments) {
    const QString& word = arguments[0];
    for (const PolicyProblem& problem : kPolicyProblems) {
        if (problem.name == word && arguments.size() == 1) {
            return Outcome::of(agent.post(problem.notification));
        }
    }
    const QString value = arguments.value(1);
    if (word == QLatin1String("notifications")) {
        const std::optional<bool> on = onOff(value);
        agent.settings().policyNotifications = on.value_or(agent.settings().policyNotifications);
        return on ? Outcome::ok() : Outcome::error(onOrOff());
    }
    if (arguments.size() == 2 && word == QLatin1String("name")) {
        agent.settings().policyName = value;
        return Outcome::ok();
    }
    if (arguments.size() == 2 && word == QLatin1String("mode")) {
        agent.settings().policyMode = value;
        return Outcome::ok();
    }
    return Outcome::error(QStringLiteral("expired, invalid-company, invalid-signature, name TEXT, "
                                         "mode TEXT or notifications on|off is needed"));
}

Outcome set(Agent& agent, const QStringList& arguments) {
    for (const TextSetting& setting : kTextSettings) {
        if (setting.name == arguments[0]) {
            agent.settings().*setting.value = arguments[1];
            return Outcome::ok();
        }
    }
    const std::optional<int> level = numberIn(arguments[1], 0, 3);
    if (arguments[0] == QLatin1String("log-level") && level) {
        agent.settings().logLevel = *level;
        return Outcome::ok();
    }
    return Outcome::error(QStringLiteral("no such setting, or no such value"));
}

Outcome settings(Agent& agent, const QStringList& /*arguments*/) {
    const AgentSettings& now = agent.settings();
    QJsonObject all{{QStringLiteral("policy-name"), now.policyName},
                    {QStringLiteral("policy-mode"), now.policyMode},
                    {QStringLiteral("policy-notifications"), now.policyNotifications},
                    {QStringLiteral("driver-value"), now.driverValue},
                    {QStringLiteral("log-level"), now.logLevel}};
    for (const TextSetting& setting : kTextSettings) {
        all.insert(setting.name, now.*setting.value);
    }
    Outcome outcome = Outcome::ok();
    outcome.lines = {QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact))};
    return outcome;
}

Outcome requests(Agent& agent, const QStringList& arguments) {
    if (!arguments.isEmpty()) {
        if (arguments[0] != QLatin1String("clear")) {
            return Outcome::error(QStringLiteral("clear or nothing is needed"));
        }
        agent.requests().clear();
        return Outcome::ok();
    }
    Outcome outcome = Outcome::ok(QString::number(agent.requests().lines().size()));
    for (const QByteArray& line : agent.requests().lines()) {
        outcome.lines.append(QString::fromUtf8(line));
    }
    return outcome;
}

Outcome waitRequest(Agent& agent, const QStringList& arguments) {
    QDeadlineTimer until(kPatience);
    if (arguments.size() == 2) {
        const std::optional<QDeadlineTimer> limit = deadline(arguments[1]);
        if (!limit) {
            return Outcome::error(noNumber(arguments[1]));
        }
        until = *limit;
    }
    return Outcome::waiting([&agent, until, command = arguments[0]] {
        if (agent.requests().claim(command)) {
            return Outcome::ok(command);
        }
        return until.hasExpired() ? Outcome::error(QStringLiteral("no such request came"))
                                  : Outcome::waiting({});
    });
}

Outcome takeName(Agent& agent, const QStringList& /*arguments*/) {
    agent.bus().takeName();
    return Outcome::waiting([&agent, until = QDeadlineTimer(kPatience)] {
        if (agent.bus().ownsName()) {
            return Outcome::ok();
        }
        return until.hasExpired() ? Outcome::error(QStringLiteral("not yet; it goes on trying"))
                                  : Outcome::waiting({});
    });
}

Outcome releaseName(Agent& agent, const QStringList& /*arguments*/) {
    return agent.bus().releaseName() ? Outcome::ok()
                                     : Outcome::error(QStringLiteral("the name was not owned"));
}

Outcome wait(Agent& /*agent*/, const QStringList& arguments) {
    const std::optional<QDeadlineTimer> until = deadline(arguments[0]);
    if (!until) {
        return Outcome::error(noNumber(arguments[0]));
    }
    return Outcome::waiting(
        [until] { return until->hasExpired() ? Outcome::ok() : Outcome::waiting({}); });
}

Outcome help(Agent& /*agent*/, const QStringList& /*arguments*/) {
    Outcome outcome = Outcome::ok();
    outcome.lines = {commandHelp()};
    return outcome;
}

Outcome quit(Agent& /*agent*/, const QStringList& /*arguments*/) {
    return {Outcome::State::Quit, {}, {}, {}};
}

} // namespace korvale::sim::setting_commands
