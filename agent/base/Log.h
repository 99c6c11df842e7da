#pragma once

#include <string>
#include <string_view>

namespace korvale::agent {

/// The numbers are those of the service's "set log level" command.
enum class LogLevel : int { Error = 0, Warning = 1, Info = 2, Debug = 3 };

/// Lines above this level are not written. Any thread. Info at the start.
void setLogLevel(LogLevel level);
[[nodiscard]] LogLevel logLevel();

/// Writes one line to standard error, with the priority mark ("<3>" and so on) that the journal
/// reads. What is not printable (a file name may be anything but text) is written as \xNN, long
/// lines are cut. Any thread but one that answers the kernel: a full pipe makes the writer wait.
void log(LogLevel level, std::string_view line);

inline void logError(std::string_view line) {
    log(LogLevel::Error, line);
}
inline void logWarning(std::string_view line) {
    log(LogLevel::Warning, line);
}
inline void logInfo(std::string_view line) {
    log(LogLevel::Info, line);
}
inline void logDebug(std::string_view line) {
    log(LogLevel::Debug, line);
}

/// The bytes of a name or path as one harmless piece of text: valid UTF-8 stays, control characters
/// and other bytes become \xNN.
[[nodiscard]] std::string printable(std::string_view bytes);

} // namespace korvale::agent
