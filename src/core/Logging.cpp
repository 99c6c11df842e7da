#include "core/Logging.h"

#include "platform/TextFormat.h"

#include <array>
#include <atomic>
#include <cstdio>

namespace korvale {
namespace {

std::atomic<LogSink*> chosenSink{nullptr};
std::atomic<LogLevel> processLogLevel{static_cast<LogLevel>(KORVALE_LOG_LEVEL)};

} // namespace

LogLevel logLevel() { return processLogLevel; }
void setLogSink(LogSink* sink) { chosenSink = sink; }
void setLogLevel(LogLevel level) { processLogLevel = level; }

void OSLoggingLogMessage(LogLevel level, const char* format,
                         std::initializer_list<QString> arguments) {
    static constexpr std::array levelWords{"ERROR", "WARN", "INFO", "DEBUG"};
    const QString message = formatText(QString::fromUtf8(format), arguments);
    const QByteArray line = QByteArray(levelWords[static_cast<std::size_t>(level)]) + " \"" +
                            message.toUtf8() + '"';
    if (LogSink* sink = chosenSink) {
        sink->write(level, line);
        return;
    }
    std::fprintf(stderr, "%s\n", line.constData());
}

void logTrace(const char* format, std::initializer_list<QString> arguments) {
    const QByteArray line = formatText(QString::fromUtf8(format), arguments).toUtf8();
    if (LogSink* sink = chosenSink) {
        sink->write(LogLevel::Info, line);
        return;
    }
    std::fprintf(stderr, "%s\n", line.constData());
}

} // namespace korvale
