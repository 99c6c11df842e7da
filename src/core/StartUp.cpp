#include "core/StartUp.h"

#include "core/BundleIdentity.h"
#include "core/ProcessValues.h"
#include "core/VersionRecords.h"
#include "core/base/Logging.h"

namespace korvale {

void logStartUp(const InfoDictionary& info) {
    static constexpr const char* function = "main";
    logLine(LogLevel::Info, "%s() Bastion KorveleUI Enter", function);
    UtilLogVersionNumber();
    UtilLogOSVersionNumber();
    logLine(LogLevel::Info, "%s() Bastion KorveleUI Log Level %s", function,
            logLevelWord(logLevel()));
    logLine(LogLevel::Info, "%s() Bastion KorveleUI Bundle ID %s", function,
            [] { return bufferText(bundleIdentity().identifier); });
    if (qEnvironmentVariableIsSet("KORVALE_ROOT")) {
        logLine(LogLevel::Warn, "KORVALE_ROOT is set: files are read below %@.",
                [] { return qEnvironmentVariable("KORVALE_ROOT"); });
    }
    const InfoFile administrators = info.administratorsFile();
    if (administrators != InfoFile::Used && administrators != InfoFile::Absent) {
        logLine(LogLevel::Warn, "%@ %s and is ignored.", InfoDictionary::administratorsPath,
                stateText(administrators));
    }
}

void logUnknownOptions(const CommandLine& rest) {
    for (const QByteArray& option : rest.unknownOptions()) {
        logLine(LogLevel::Warn, "There is no option %@.",
                [&option] { return QString::fromUtf8(option); });
    }
}

bool otherInstanceRuns(const RunningApplications& running) {
    for (const RunningApplication& application : running.list()) {
        logLine(LogLevel::Info, "app(%@), pid(%u)", application.localizedName, application.pid);
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
