#include "core/AdvancedMode.h"

#include "core/base/Logging.h"
#include "model/Utf8Text.h"
#include "platform/SmallFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>

namespace korvale {
namespace {

constexpr qint64 largestFile = 1 << 20;

void logDebug(const char* format, std::initializer_list<QString> arguments = {}) {
    if (logs(LogLevel::Debug)) {
        OSLoggingLogMessage(LogLevel::Debug, format, arguments);
    }
}

QString flag(bool value) {
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

std::optional<QString> takeContents(const QString& path) {
    const std::optional<QByteArray> bytes = readSmallFile(path, largestFile);
    std::optional<QString> contents = bytes ? textFromUtf8(*bytes) : std::nullopt;
    QFile file(path);
    const bool removed = file.remove();
    logDebug("isAdvanceMode error %@, contents %@",
             {removed ? QStringLiteral("(null)") : file.errorString(),
              contents.value_or(QStringLiteral("(null)"))});
    return contents;
}

} // namespace

bool isAdvanceMode(const CommandLine& commandLine, const QString& applicationSupport) {
    logDebug("isAdvanceMode in");
    if (commandLine.contains("-a")) {
        return true;
    }
    const QString path = applicationSupport + QStringLiteral("/Korvale/uiArgs");
    const QFileInfo file(path);
    logDebug("isAdvanceMode dir %i, exist %i", {flag(file.isDir()), flag(file.exists())});
    if (file.exists() && !file.isDir()) {
        const std::optional<QString> contents = takeContents(path);
        if (contents && contents->contains(QLatin1String(" -a"))) {
            logDebug("isAdvanceMode true");
            return true;
        }
    }
    logDebug("isAdvanceMode false exit");
    return false;
}

QString applicationSupportFolder() {
    const QString given = QFile::decodeName(qgetenv("XDG_DATA_HOME"));
    return given.startsWith(QLatin1Char('/')) ? given
                                              : QDir::homePath() + QStringLiteral("/.local/share");
}

} // namespace korvale
