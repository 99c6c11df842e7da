#include "core/StartUp.h"

#include "core/BundleIdentity.h"
#include "core/ProcessValues.h"
#include "core/VersionRecords.h"
#include "core/base/Logging.h"

namespace korvale {
namespace {

void logLine(LogLevel level, const char* format, std::initializer_list<QString> arguments = {}) {
    if (logs(level)) {
        OSLoggingLogMessage(level, format, arguments);
    }
}

} // namespace

void logStartUp(const InfoDictionary& info) {
    const QString function = QStringLiteral("main");
    logLine(LogLevel::Info, "%s() Bastion KorveleUI Enter", {function});
    UtilLogVersionNumber();
    UtilLogOSVersionNumber();
    logLine(LogLevel::Info, "%s() Bastion KorveleUI Log Level %s",
            {function, QString::fromLatin1(logLevelWord(logLevel()))});
    logLine(LogLevel::Info, "%s() Bastion KorveleUI Bundle ID %s",
            {function, bufferText(bundleIdentity().identifier)});
    if (qEnvironmentVariableIsSet("KORVALE_ROOT")) {
        logLine(LogLevel::Warn, "KORVALE_ROOT is set: files are read below %@.",
                {qEnvironmentVariable("KORVALE_ROOT")});
    }
    if (info.ignoresAdministratorsFile()) {
        logLine(LogLevel::Warn, "%@ holds no JSON object and is ignored.",
                {InfoDictionary::administratorsPath()});
    }
}

bool otherInstanceRuns(const RunningApplications& running) {
    for (const RunningApplication& application : running.list()) {
        if (logs(LogLevel::Info)) {
            OSLoggingLogMessage(LogLevel::Info, "app(%@), pid(%u)",
                                {application.localizedName, QString::number(application.pid)});
        }
        if (application.localizedName == QLatin1String("KorvaleBASTION")) {
            return true;
        }
    }
    return false;
}

void logOtherInstance() {
    logLine(LogLevel::Info, "KorvaleUI: an instance already running");
}

void setAutomationMode(const CommandLine& commandLine) {
    processValues().automationMode = commandLine.isAutomation();
}

void setNoUIMode(const InfoDictionary& info) {
    processValues().noUIMode = info.isNoUIMode();
    if (processValues().noUIMode) {
        logLine(LogLevel::Info, "NoKorvaleUIMode is on.");
    }
}

} // namespace korvale
