#include "agent_sim/Agent.h"
#include "agent_sim/CommandHandlers.h"
#include "agent_sim/Publishing.h"
#include "agent_sim/TestString.h"
#include "agent_sim/Words.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace korvale::sim::scan_commands {
namespace {

/// Marks the demonstration's abnormal file; no other file holds it by chance.
constexpr char kAbnormalContent[] = "Korvale stand-in agent: this file counts as abnormal.\n";
constexpr int kSlowestPace = 60'000;

QString writeNewFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    const bool written = QDir().mkpath(QFileInfo(path).path()) &&
                         file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
                         file.write(content) == content.size() && file.flush();
    return written ? QString()
                   : QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
}

} // namespace

Outcome scan(Agent& agent, const QStringList& arguments) {
    return Outcome::of(agent.startFolderScan(arguments[0]));
}

Outcome backgroundScan(Agent& agent, const QStringList& arguments) {
    if (!arguments.isEmpty()) {
        agent.folders().backgroundScan = arguments[0];
    }
    return Outcome::of(agent.startBackgroundScan());
}

Outcome stopScan(Agent& agent, const QStringList& /*arguments*/) {
    return Outcome::of(agent.stopScan());
}

Outcome waitScan(Agent& agent, const QStringList& /*arguments*/) {
    return Outcome::waiting(
        [&agent] { return agent.scan().isRunning() ? Outcome::waiting({}) : Outcome::ok(); });
}

Outcome scanPace(Agent& agent, const QStringList& arguments) {
    const std::optional<int> pace = numberIn(arguments[0], 0, kSlowestPace);
    if (!pace) {
        return Outcome::error(noNumber(arguments[0]));
    }
    agent.scan().setPace(*pace);
    return Outcome::ok();
}

Outcome quarantine(Agent& agent, const QStringList& arguments) {
    const QString problem = agent.quarantine().take(arguments[0]);
    return problem.isEmpty() ? publishChange(agent) : Outcome::error(problem);
}

Outcome waive(Agent& agent, const QStringList& arguments) {
    const QString problem = agent.quarantine().waive(arguments[0]);
    return problem.isEmpty() ? publishChange(agent) : Outcome::error(problem);
}

Outcome writeTestFile(Agent& /*agent*/, const QStringList& arguments) {
    return Outcome::of(writeNewFile(arguments[0], eicarTestString()));
}

Outcome writeAbnormalFile(Agent& agent, const QStringList& arguments) {
    const QByteArray digest =
        QCryptographicHash::hash(QByteArray(kAbnormalContent), QCryptographicHash::Sha256);
    agent.scanReporter().addAbnormal(QString::fromLatin1(digest.toHex()));
    return Outcome::of(writeNewFile(arguments[0], kAbnormalContent));
}

} // namespace korvale::sim::scan_commands
