#pragma once

#include "core/base/LogSink.h"

#include <QString>

#include <concepts>
#include <initializer_list>

namespace korvale {

/// The process-wide log level: 2 unless the build says otherwise; never changed at run time.
[[nodiscard]] LogLevel logLevel();

/// True when lines of `level` are written.
[[nodiscard]] inline bool logs(LogLevel level) {
    return logLevel() >= level;
}

/// Formats and writes one line: the level word, a blank, and the message between double quotes.
/// Placeholders of `format` (given without the quotes) are filled as formatText does. It does not
/// ask for the level: its caller does, which is logLine. Any thread.
void OSLoggingLogMessage(LogLevel level, const char* format,
                         std::initializer_list<QString> arguments = {});

inline const QString& logArgument(const QString& text) {
    return text;
}
inline QString logArgument(const char* text) {
    return QString::fromUtf8(text);
}
template <std::integral Number>
QString logArgument(Number number) {
    return QString::number(number);
}
template <std::invocable Text>
QString logArgument(const Text& text) {
    return text();
}

/// Writes a line unless its level is suppressed. An argument is a text, a number, or something to
/// call that gives a text; of a suppressed line none is made into a text or called. Any thread.
template <typename... Arguments>
void logLine(LogLevel level, const char* format, const Arguments&... arguments) {
    if (logs(level)) {
        OSLoggingLogMessage(level, format, {logArgument(arguments)...});
    }
}

/// A trace line: to the same sink as it is, without level word and quotes.
void logTrace(const char* format, std::initializer_list<QString> arguments);

/// Kept for use before start-up; nothing in the program calls it.
void UninitializedLogging(const char* category, const char* message);

/// The last act of applicationWillTerminate; does nothing, as the system's log needs no closing.
void OSLoggingShutdown();

/// To be called before the process ends without destructors: no line is left unwritten.
void finishLog();

/// "ERROR", "WARN", "INFO" or "DEBUG".
[[nodiscard]] const char* logLevelWord(LogLevel level);

/// `text` with every control character (C0, DEL, C1) written \xNN, so that no file name can forge
/// a second line or steer a terminal.
[[nodiscard]] QString escapeControlCharacters(const QString& text);

/// Where lines go from now on; with nullptr (as at first) to standard error alone. Not owned.
void setLogSink(LogSink* sink);
/// For tests of lines that this build's level suppresses.
void setLogLevel(LogLevel level);

} // namespace korvale
