#include "core/AdvancedMode.h"

#include "core/base/Logging.h"
#include "model/Utf8Text.h"
#include "platform/SmallFile.h"

#include <QFile>
#include <QFileInfo>

#include <optional>

namespace korvale {
namespace {

constexpr qint64 largestFile = 1 << 20;

std::optional<QString> takeContents(const QString& path) {
    const std::optional<QByteArray> bytes = readSmallFile(path, largestFile);
    std::optional<QString> contents = bytes ? textFromUtf8(*bytes) : std::nullopt;
    QFile file(path);
    const bool removed = file.remove();
    logLine(
        LogLevel::Debug, "isAdvanceMode error %@, contents %@",
        [&] { return removed ? QStringLiteral("(null)") : file.errorString(); },
        [&] { return contents.value_or(QStringLiteral("(null)")); });
    return contents;
}

} // namespace

bool isAdvanceMode(const CommandLine& commandLine, const QString& applicationSupport) {
    logLine(LogLevel::Debug, "isAdvanceMode in");
    if (commandLine.contains("-a")) {
        return true;
    }
    const QString path = applicationSupport + QStringLiteral("/Korvale/uiArgs");
    const QFileInfo file(path);
    logLine(LogLevel::Debug, "isAdvanceMode dir %i, exist %i", int{file.isDir()},
            int{file.exists()});
    if (file.exists() && !file.isDir()) {
        const std::optional<QString> contents = takeContents(path);
        if (contents && contents->contains(QLatin1String(" -a"))) {
            logLine(LogLevel::Debug, "isAdvanceMode true");
            return true;
        }
    }
    logLine(LogLevel::Debug, "isAdvanceMode false exit");
    return false;
}

} // namespace korvale
