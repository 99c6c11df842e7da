#include "core/base/Logging.h"

#include "core/base/StandardError.h"
#include "core/base/TextFormat.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <atomic>

namespace korvale {
namespace {

std::atomic<LogSink*> chosenSink{nullptr};
static_assert(KORVALE_LOG_LEVEL >= 0 && KORVALE_LOG_LEVEL <= 3, "there are four log levels");
std::atomic<LogLevel> processLogLevel{static_cast<LogLevel>(KORVALE_LOG_LEVEL)};

constexpr std::array levelWords{"ERROR", "WARN", "INFO", "DEBUG"};

/// C0, DEL and C1.
bool isControl(QChar character) {
    const char16_t unit = character.unicode();
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

/// Before the sink is chosen (the very first lines, and tests) standard error alone is there.
void writeLine(LogLevel level, const QString& text) {
    const QByteArray line = escapeControlCharacters(text).toUtf8();
    if (LogSink* sink = chosenSink) {
        sink->write(level, line);
    } else {
        writeToStandardError(line);
    }
}

} // namespace

LogLevel logLevel() {
    return processLogLevel;
}
void setLogSink(LogSink* sink) {
    chosenSink = sink;
}
void setLogLevel(LogLevel level) {
    processLogLevel = level;
}

const char* logLevelWord(LogLevel level) {
    return levelWords[static_cast<std::size_t>(level)];
}

QString escapeControlCharacters(const QString& text) {
    if (std::none_of(text.begin(), text.end(), isControl)) {
        return text;
    }
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (isControl(character)) {
            result += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            result += character;
        }
    }
    return result;
}

void OSLoggingLogMessage(LogLevel level, const char* format,
                         std::initializer_list<QString> arguments) {
    QVarLengthArray<char, 256> quoted;
    for (const char* part : {logLevelWord(level), " \"", format, "\""}) {
        quoted.append(part, static_cast<qsizetype>(qstrlen(part)));
    }
    writeLine(level, formatText(QString::fromUtf8(quoted.data(), quoted.size()), arguments));
}

void logTrace(const char* format, std::initializer_list<QString> arguments) {
    writeLine(LogLevel::Info, formatText(QString::fromUtf8(format), arguments));
}

void UninitializedLogging(const char* category, const char* message) {
    logTrace("Uninitialized Logging [%s] %s",
             {QString::fromUtf8(category), QString::fromUtf8(message)});
}

void OSLoggingShutdown() {}

void finishLog() {
    if (LogSink* sink = chosenSink) {
        sink->finish();
    }
}

} // namespace korvale
