#include "platform/ToolkitMessages.h"

#include "core/base/Logging.h"

#include <QCoreApplication>
#include <QThread>
#include <QtGlobal>

#include <cstdlib>

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

/// The toolkit's Wayland client says this when the compositor is gone, and then ends the process on
/// the spot, by _exit: this is the last moment for an end like any other.
bool announcesEndOfCompositor(const QString& message) {
    return message.startsWith(QLatin1String("The Wayland connection "));
}

/// exit(), on the main thread, before whoever calls may go on. What guards exit() makes status 0 of
/// it.
void endBeforeTheToolkitDoes() {
    constexpr unsigned long patience = 2; // seconds, for a main thread that is held up
    const auto end = [] { std::exit(EXIT_FAILURE); };
    if (QThread::currentThread() == qApp->thread()) {
        end();
    }
    QMetaObject::invokeMethod(qApp, end, Qt::QueuedConnection);
    QThread::sleep(patience);
}

void logMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    const LogLevel level = levelOf(type);
    logLine(level, "%@", message);
    if (type == QtFatalMsg) {
        finishLog(); // the toolkit aborts
    }
    if (announcesEndOfCompositor(message) && qApp) {
        endBeforeTheToolkitDoes();
    }
}

} // namespace

void logToolkitMessages() {
    qInstallMessageHandler(logMessage);
}

} // namespace korvale
