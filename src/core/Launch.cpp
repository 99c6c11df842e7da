#include "core/Launch.h"

#include "core/AppDelegate.h"
#include "core/BundleIdentity.h"
#include "core/ProcessValues.h"
#include "core/StartUp.h"
#include "core/StatusCommand.h"
#include "core/StatusOptions.h"
#include "core/TerminalCommand.h"
#include "core/UserSession.h"
#include "core/base/Logging.h"
#include "core/base/StandardError.h"
#include "platform/DisplayGuard.h"
#include "platform/EndLimit.h"
#include "platform/ProcRunningApplications.h"
#include "platform/SpareMemory.h"
#include "platform/SystemLogSink.h"
#include "platform/Termination.h"
#include "platform/ToolkitMessages.h"
#include "shell/Translations.h"

#include <QApplication>
#include <QSessionManager>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

namespace korvale {
namespace {

/// The exit status: whoever asked may have no place for the answer.
int print(const QByteArray& text) {
    const auto size = static_cast<std::size_t>(text.size());
    const bool isWritten =
        std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

QByteArray versionText() {
    return (bufferText(bundleIdentity().name) + QLatin1Char(' ') +
            bufferText(bundleIdentity().version) + QLatin1Char('\n'))
        .toUtf8();
}

int askForStatus(int argc, char** argv) {
    const std::vector<QByteArray> arguments(argv + 1, argv + argc);
    const QCoreApplication application(argc, argv);
    const Translations translations;
    return runStatusCommand(arguments);
}

/// What becomes of a terminal command is printed: the lines of the connection would stand between.
class NoLog final : public LogSink {
public:
    void write(LogLevel /*level*/, const QByteArray& /*line*/) override {}
};

InfoDictionary loadIdentity() {
    InfoDictionary info =
        InfoDictionary::load(InfoDictionary::packagedPath(), InfoDictionary::administratorsPath());
    OSLoggingStartup(info, QString::fromLocal8Bit(program_invocation_short_name));
    return info;
}

int commandTheAgent(int argc, char** argv) {
    NoLog log;
    setLogSink(&log);
    loadIdentity();
    QGuiApplication::setApplicationDisplayName(bufferText(bundleIdentity().name));
    TerminationSignals signalsOfTheSystem;
    const std::vector<QByteArray> arguments(argv + 1, argv + argc);
    const QCoreApplication application(argc, argv);
    const Translations translations;
    const int status = runTerminalCommand(arguments, signalsOfTheSystem);
    setLogSink(nullptr);
    return status;
}

/// The toolkit's application object as this program wants it.
class Application {
public:
    Application(int& argc, char** argv) {
        if (processValues().automationMode) {
            allowNoDisplay(argc, argv);
        }
        QCoreApplication::setApplicationName(QStringLiteral("korvale-ui"));
        QGuiApplication::setApplicationDisplayName(bufferText(bundleIdentity().name));
        QGuiApplication::setDesktopFileName(QStringLiteral("com.korvale.ui"));
        {
            const DisplayGuard guard;
            m_application.emplace(argc, argv);
        }
        QGuiApplication::setQuitOnLastWindowClosed(false);
        // Started with every session by the desktop's own means.
        const auto neverRestart = [](QSessionManager& manager) {
            manager.setRestartHint(QSessionManager::RestartNever);
        };
        QObject::connect(&*m_application, &QGuiApplication::commitDataRequest, &*m_application,
                         neverRestart);
        QObject::connect(&*m_application, &QGuiApplication::saveStateRequest, &*m_application,
                         neverRestart);
    }

private:
    std::optional<QApplication> m_application;
};

int runApplication(int argc, char** argv, const CommandLine& commandLine,
                   const InfoDictionary& info, TerminationSignals& signalsOfTheSystem) {
    const StartEnvironment environment;
    std::atomic<bool> hasEnded = false;
    const auto willTerminate = [&hasEnded] {
        if (!hasEnded.exchange(true)) {
            AppDelegate::applicationWillTerminate();
        }
    };
    const EndLimit endLimit(signalsOfTheSystem, willTerminate);
    UserSession session(commandLine.action()); // asks the session bus while the toolkit starts
    const Application application(argc, argv);
    logUnknownOptions(CommandLine(argc, argv)); // the toolkit has taken its own away
    const Translations translations;
    AppDelegate delegate({commandLine, info, environment,
                          [&] { signalsOfTheSystem.sleepOneSecond(); },
                          [&] { session.terminate(); }});
    delegate.offerStatusOn(session.object());
    QObject::connect(&signalsOfTheSystem, &TerminationSignals::requested, &session,
                     &UserSession::terminate);
    signalsOfTheSystem.watch();
    QObject::connect(&session, &UserSession::busDecided, &delegate, &AppDelegate::useSessionBus);
    QObject::connect(&session, &UserSession::launch, &delegate,
                     &AppDelegate::applicationDidFinishLaunching);
    QObject::connect(&session, &UserSession::activated, &delegate, &AppDelegate::activate);
    // The toolkit calls exit() when the display server goes away: an end like any other.
    const ToolkitExitGuard toolkitExit(willTerminate);
    if (session.run() == UserSession::End::Terminated) {
        willTerminate();
    }
    hasEnded = true;
    return EXIT_SUCCESS;
}

int start(int argc, char** argv, const CommandLine& commandLine, const InfoDictionary& info,
          TerminationSignals& signalsOfTheSystem) {
    logStartUp(info);
    setAutomationMode(commandLine);
    if (!processValues().automationMode && otherInstanceRuns(ProcRunningApplications())) {
        logOtherInstance();
        return EXIT_SUCCESS;
    }
    setNoUIMode(info);
    return runApplication(argc, argv, commandLine, info, signalsOfTheSystem);
}

} // namespace

int runKorvaleUI(int argc, char** argv) {
    keepMemoryInOnePlace();
    replaceClosedStandardStreams();
    const CommandLine commandLine(argc, argv);
    if (commandLine.asksFor("--help")) {
        return print(helpText());
    }
    if (commandLine.asksFor("--status")) {
        return askForStatus(argc, argv);
    }
    if (isTerminalCommand(commandLine)) {
        return commandTheAgent(argc, argv);
    }
    if (hasStatusOption(commandLine)) {
        return askForStatus(argc, argv);
    }
    const InfoDictionary info = loadIdentity();
    if (commandLine.asksFor("--version")) {
        return print(versionText());
    }
    TerminationSignals signalsOfTheSystem;
    ignoreBrokenPipes();
    SystemLogSink log;
    setLogSink(&log);
    logToolkitMessages();
    if (!info.isInstalled()) {
        logLine(LogLevel::Error, "The installation is broken: %@ %s.", InfoDictionary::packagedPath,
                stateText(info.packagedFile()));
    }
    const int status = info.isInstalled() ? start(argc, argv, commandLine, info, signalsOfTheSystem)
                                          : EXIT_FAILURE;
    setLogSink(nullptr);
    return status;
}

} // namespace korvale
