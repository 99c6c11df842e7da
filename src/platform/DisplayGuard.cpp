#include "platform/DisplayGuard.h"

#include "core/base/Logging.h"

#include <QByteArray>
#include <QString>

#include <cstdlib>

namespace korvale {
namespace {

QString environmentText(const char* name) {
    return qEnvironmentVariableIsSet(name)
               ? QString::fromLatin1(name) + QLatin1Char('=') + qEnvironmentVariable(name)
               : QString::fromLatin1(name) + QStringLiteral(" not set");
}

void whileStarting(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type != QtFatalMsg) {
        return; // the toolkit's own words about displays it could not open
    }
    if (logs(LogLevel::Error)) {
        if (message.contains(QLatin1String("platform plugin"))) {
            OSLoggingLogMessage(LogLevel::Error, "No usable display (%@, %@).",
                                {environmentText("DISPLAY"), environmentText("WAYLAND_DISPLAY")});
        } else {
            OSLoggingLogMessage(LogLevel::Error, "%@", {message});
        }
    }
    finishLog();
    // Returning would abort; a half-made application cannot be destroyed.
    std::_Exit(EXIT_FAILURE);
}

} // namespace

DisplayGuard::DisplayGuard() : m_previous(qInstallMessageHandler(whileStarting)) {}

DisplayGuard::~DisplayGuard() {
    qInstallMessageHandler(m_previous);
}

void allowNoDisplay() {
    // The toolkit tries one after the other. What the user asked for comes first.
    QByteArray platforms = qgetenv("QT_QPA_PLATFORM");
    if (platforms.isEmpty()) {
        if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
            platforms += "wayland;";
        }
        if (qEnvironmentVariableIsSet("DISPLAY")) {
            platforms += "xcb;";
        }
    } else {
        platforms += ';';
    }
    qputenv("QT_QPA_PLATFORM", platforms + "offscreen");
}

} // namespace korvale
