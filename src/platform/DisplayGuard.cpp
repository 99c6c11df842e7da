#include "platform/DisplayGuard.h"

#include "core/base/Logging.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <forward_list>

namespace korvale {
namespace {

QString environmentText(const char* name) {
    return qEnvironmentVariableIsSet(name)
               ? QString::fromLatin1(name) + QLatin1Char('=') + qEnvironmentVariable(name)
               : QString::fromLatin1(name) + QStringLiteral(" not set");
}

/// What the toolkit said of displays it could not open; heard by the thread that constructs it.
QStringList& complaints() {
    static QStringList kept;
    return kept;
}

QString reason() {
    complaints().removeDuplicates();
    return complaints().isEmpty() ? QString()
                                  : QStringLiteral(": ") + complaints().join(QStringLiteral("; "));
}

/// What to install where the toolkit lacks the plug-in of the display that is there.
QString advice() {
    const bool lacksWayland =
        std::any_of(complaints().cbegin(), complaints().cend(), [](const QString& complaint) {
            return complaint.contains(QLatin1String("Could not find")) &&
                   complaint.contains(QLatin1String("\"wayland\""));
        });
    return lacksWayland ? QStringLiteral("; the package qt6-wayland is missing") : QString();
}

void whileStarting(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type != QtFatalMsg) {
        complaints() += message;
        return;
    }
    if (message.contains(QLatin1String("platform plugin"))) {
        logLine(
            LogLevel::Error, "No usable display (%@, %@)%@%@",
            [] { return environmentText("DISPLAY"); },
            [] { return environmentText("WAYLAND_DISPLAY"); }, reason, advice);
    } else {
        logLine(LogLevel::Error, "%@", message);
    }
    finishLog();
    // Returning would abort; a half-made application cannot be destroyed.
    std::_Exit(EXIT_FAILURE);
}

/// "-platform xcb" outranks the environment.
void allowNoDisplayBeside(int argc, char** argv) {
    static std::forward_list<QByteArray> kept; // the toolkit keeps no copies
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "-platform") == 0 || qstrcmp(argv[i], "--platform") == 0) {
            kept.push_front(argv[++i] + QByteArray(";offscreen"));
            argv[i] = kept.front().data();
        }
    }
}

} // namespace

DisplayGuard::DisplayGuard() : m_previous(qInstallMessageHandler(whileStarting)) {}

DisplayGuard::~DisplayGuard() {
    qInstallMessageHandler(m_previous);
    complaints().clear();
}

void allowNoDisplay(int argc, char** argv) {
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
    allowNoDisplayBeside(argc, argv);
}

} // namespace korvale
