#include "agent/app/Agent.h"
#include "agent/app/Life.h"
#include "agent/base/Log.h"
#include "agent/publish/BuildSettings.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

constexpr int kUsageError = 2;

int checkConfiguration(const std::string& file) {
    const ConfigurationResult result = loadConfiguration(file);
    if (const auto* problem = std::get_if<std::string>(&result)) {
        std::fprintf(stderr, "%s: %s\n", file.c_str(), problem->c_str());
        return 1;
    }
    return 0;
}

int serve(const std::string& file, GuardProcess guard) {
    ConfigurationFile configuration(file);
    configuration.read();
    std::string error;
    const std::unique_ptr<Agent> agent =
        Agent::make(std::move(configuration), std::move(guard), error);
    if (!agent) {
        logError(error);
        return 1;
    }
    Life life;
    QObject::connect(agent.get(), &Agent::statusLine, &life, &Life::status);
    QObject::connect(agent.get(), &Agent::stopped, &life, [] { QCoreApplication::quit(); });
    QObject::connect(&life, &Life::endWanted, agent.get(), [&] {
        life.stopping();
        agent->stop();
    });
    QObject::connect(&life, &Life::reloadWanted, agent.get(), [&] {
        life.reloading();
        agent->reload([&life](const QString& /*problem*/) { life.reloaded(); });
    });
    QObject::connect(&life, &Life::childChanged, agent.get(), &Agent::childChanged);
    QObject::connect(&life, &Life::alive, agent.get(), &Agent::checkGuard);
    agent->start();
    life.ready();
    return QCoreApplication::exec();
}

int run(GuardProcess guard) {
    QCommandLineParser parser;
    const QCommandLineOption file(
        QStringLiteral("config"), QStringLiteral("Read this configuration."),
        QStringLiteral("FILE"), QStringLiteral("/etc/korvale-agent/agent.toml"));
    const QCommandLineOption check(QStringLiteral("check-config"),
                                   QStringLiteral("Say what is wrong with it, and end."));
    parser.setApplicationDescription(
        QStringLiteral("Scans files, finds bad ones and moves them to quarantine. See "
                       "korvale-agent(8)."));
    parser.addOptions({file, check});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(QCoreApplication::arguments());
    if (!parser.positionalArguments().isEmpty()) {
        std::fputs("korvale-agent: unexpected argument, try --help\n", stderr);
        return kUsageError;
    }
    const std::string path = QFile::encodeName(parser.value(file)).toStdString();
    return parser.isSet(check) ? checkConfiguration(path) : serve(path, std::move(guard));
}

} // namespace
} // namespace korvale::agent

int main(int argc, char** argv) {
    using namespace korvale::agent;
    // Before there is a second thread, which would take the signals otherwise.
    Life::blockSignals();
    ::umask(S_IWGRP | S_IWOTH);
    // Likewise: its life hangs on that of the thread that forks it.
    GuardProcess guard = GuardProcess::start();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korvale-agent"));
    QCoreApplication::setApplicationVersion(build::kVersion.toString());
    return run(std::move(guard));
}
