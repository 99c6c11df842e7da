#include "agent/app/Gatekeeper.h"

#include "agent/base/Log.h"

#include <algorithm>
#include <array>

namespace korvale::agent {
namespace {

struct Rule {
    Task task;
    const char* action; ///< of polkit; null: anybody may
    bool mayAskPerson;  ///< for a password
    bool withoutPolkit; ///< others than root may, where there is no polkit
};

constexpr std::array kRules{
    Rule{Task::Ask, nullptr, false, true},
    Rule{Task::Scan, "com.korvale.agent.scan", false, true},
    Rule{Task::StopScans, "com.korvale.agent.stop-scans", true, false},
    Rule{Task::Update, "com.korvale.agent.update", false, false},
    Rule{Task::SetLogLevel, "com.korvale.agent.set-log-level", true, false},
    Rule{Task::View, "com.korvale.agent.view", false, false},
    Rule{Task::ManageThreats, "com.korvale.agent.manage-threats", true, false},
};

const Rule& ruleOf(Task task) {
    return *std::find_if(kRules.begin(), kRules.end(),
                         [&](const Rule& rule) { return rule.task == task; });
}

} // namespace

void Gatekeeper::logRefusal(const QString& what, const Caller& caller, const QString& reason) {
    logWarning(QStringLiteral("Refused %1 for user %2 (%3): %4")
                   .arg(what, QString::number(caller.uid), caller.busName, reason)
                   .toStdString());
}

void Gatekeeper::admit(const QDBusConnection& connection, const QString& busName, Task task,
                       const QString& what, const Admitted& admitted, const Refused& refused) {
    m_lookup.ask(connection, busName, [=, this](const std::optional<Caller>& caller) {
        if (!caller) {
            const QString reason = QStringLiteral("The bus does not tell who asks.");
            logWarning(
                QStringLiteral("Refused %1 for %2: %3").arg(what, busName, reason).toStdString());
            refused(reason);
            return;
        }
        const Rule& rule = ruleOf(task);
        RequestLimits& limits = rule.action == nullptr ? m_questions : m_tasks;
        if (!limits.take(caller->uid)) {
            const QString reason = QStringLiteral("Too many requests. Try again later.");
            logRefusal(what, *caller, reason);
            refused(reason);
        } else if (caller->isRoot() || rule.action == nullptr) {
            admitted(*caller);
        } else {
            askConsent(connection, *caller, task, what, admitted, refused);
        }
    });
}

void Gatekeeper::askConsent(const QDBusConnection& connection, const Caller& caller, Task task,
                            const QString& what, const Admitted& admitted, const Refused& refused) {
    const Rule& rule = ruleOf(task);
    m_consent.ask(connection, caller.busName, QLatin1String(rule.action), rule.mayAskPerson,
                  [=, &rule](Consent::Outcome outcome) {
                      if (outcome == Consent::Outcome::Granted ||
                          (outcome == Consent::Outcome::Unavailable && rule.withoutPolkit)) {
                          admitted(caller);
                          return;
                      }
                      const QString reason =
                          outcome == Consent::Outcome::Refused
                              ? QStringLiteral("Not allowed.")
                              : QStringLiteral("Only root may do this while polkit is not there.");
                      logRefusal(what, caller, reason);
                      refused(reason);
                  });
}

} // namespace korvale::agent
