#include "platform/ToolkitMessages.h"

#include "core/base/Logging.h"

#include <QtGlobal>

namespace korvale {
namespace {

LogLevel levelOf(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return LogLevel::Debug;
    case QtInfoMsg:
        return LogLevel::Info;
    case QtWarningMsg:
        return LogLevel::Warn;
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return LogLevel::Error;
}

void logMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    const LogLevel level = levelOf(type);
    logLine(level, "%@", message);
    if (type == QtFatalMsg) {
        finishLog(); // the toolkit aborts
    }
}

} // namespace

void logToolkitMessages() {
    qInstallMessageHandler(logMessage);
}

} // namespace korvale
