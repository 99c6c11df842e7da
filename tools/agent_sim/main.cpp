#include "agent_sim/Agent.h"
#include "agent_sim/AgentPaths.h"
#include "agent_sim/CommandQueue.h"
#include "agent_sim/LineInput.h"
#include "agent_sim/Scenario.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace korvale::sim {
namespace {

constexpr int kUsageError = 2;

void print(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

void complain(const QString& sentence) {
    const QByteArray bytes = "korvale-agent-sim: " + sentence.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

struct Options {
    QCommandLineParser parser;
    QCommandLineOption help{QStringLiteral("help"), QStringLiteral("Print this and end.")};
    QCommandLineOption scenario{QStringLiteral("scenario"),
                                QStringLiteral("Run the commands of a file."),
                                QStringLiteral("FILE")};
    QCommandLineOption abnormal{
        QStringLiteral("abnormal-hashes"),
        QStringLiteral("Files with these SHA-256 digests (hex, one a line) count as abnormal."),
        QStringLiteral("FILE")};
    QCommandLineOption scanFolder{QStringLiteral("scan-folder"),
                                  QStringLiteral("What a background scan scans."),
                                  QStringLiteral("FOLDER")};
    QCommandLineOption quarantine{QStringLiteral("quarantine-folder"),
                                  QStringLiteral("Where quarantined files are moved to."),
                                  QStringLiteral("FOLDER"), defaultQuarantineFolder()};
    QCommandLineOption stay{QStringLiteral("stay"),
                            QStringLiteral("Do not end at the end of standard input (a scenario "
                                           "implies it).")};

    Options() {
        parser.setApplicationDescription(QStringLiteral(
            "A stand-in for the endpoint-protection agent, on the system bus named by\n"
            "DBUS_SYSTEM_BUS_ADDRESS and with its files below KORVALE_ROOT.\n"
            "Lines it prints: \"ready\" when it owns its name on the bus, \"ok\" or \"error\" for\n"
            "each command, the same after \"scenario\" for those of the scenario file, and\n"
            "\"note\" for what happens by itself."));
        parser.addOptions({help, scenario, abnormal, scanFolder, quarantine, stay});
    }
};

/// What the scenario file and standard input bring.
class Session : public QObject {
public:
    Session(Agent& agent, bool stay)
        : m_typed(agent, &print),
          m_played(agent, [](const QString& line) { print(QStringLiteral("scenario ") + line); }) {
        connect(&m_input, &LineInput::line, this,
                [this](const QString& line) { m_typed.add(parseLine(line)); });
        connect(&m_input, &LineInput::ended, this, [this, stay] {
            if (!stay) {
                m_typed.add(parseLine(QStringLiteral("quit")));
            }
        });
        connect(&m_played, &CommandQueue::drained, this,
                [] { print(QStringLiteral("note scenario finished")); });
        for (CommandQueue* queue : {&m_typed, &m_played}) {
            connect(queue, &CommandQueue::quitRequested, this,
                    [this] { QCoreApplication::exit(m_played.failures() == 0 ? 0 : 1); });
        }
    }

    void play(const Scenario& scenario) {
        for (const ParsedLine& line : scenario.lines) {
            m_played.add(line);
        }
    }

private:
    CommandQueue m_typed;
    CommandQueue m_played;
    LineInput m_input{STDIN_FILENO};
};

int run(const Options& options) {
    Scenario scenario;
    const QString file = options.parser.value(options.scenario);
    if (!file.isEmpty()) {
        scenario = loadScenario(file);
        if (!scenario.problem.isEmpty()) {
            complain(QStringLiteral("%1: %2").arg(file, scenario.problem));
            return kUsageError;
        }
    }
    Agent agent({hostCacheFolder(), updaterStatusFolder(), options.parser.value(options.quarantine),
                 options.parser.value(options.scanFolder)});
    if (options.parser.isSet(options.abnormal)) {
        const QString problem =
            agent.scanReporter().loadAbnormal(options.parser.value(options.abnormal));
        if (!problem.isEmpty()) {
            complain(problem);
            return kUsageError;
        }
    }
    Session session(agent, options.parser.isSet(options.stay) || !file.isEmpty());
    QObject::connect(&agent, &Agent::note, &session,
                     [](const QString& line) { print(QStringLiteral("note ") + line); });
    QObject::connect(&agent.bus(), &AgentBus::problem, &session, &complain);
    QObject::connect(&agent.bus(), &AgentBus::busLost, &session,
                     [] { print(QStringLiteral("note bus lost")); });
    bool played = false;
    QObject::connect(&agent.bus(), &AgentBus::nameOwned, &session, [&] {
        print(QStringLiteral("ready"));
        if (!std::exchange(played, true)) {
            session.play(scenario);
        }
    });
    agent.bus().takeName();
    return QCoreApplication::exec();
}

} // namespace
} // namespace korvale::sim

int main(int argc, char** argv) {
    // In the background of a terminal, reading it fails instead of stopping the process.
    std::signal(SIGTTIN, SIG_IGN);
    const QCoreApplication application(argc, argv);
    using namespace korvale::sim;
    Options options;
    if (!options.parser.parse(QCoreApplication::arguments()) ||
        !options.parser.positionalArguments().isEmpty()) {
        complain(options.parser.errorText().isEmpty()
                     ? QStringLiteral("Unexpected argument. Try --help.")
                     : options.parser.errorText());
        return kUsageError;
    }
    if (options.parser.isSet(options.help)) {
        print(options.parser.helpText() + u'\n' + commandHelp());
        return 0;
    }
    return run(options);
}
