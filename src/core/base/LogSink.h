#pragma once

#include <QByteArray>

namespace korvale {

/// Severity of a log line; the numbers are the log levels of the whole product.
enum class LogLevel : int { Error = 0, Warn = 1, Info = 2, Debug = 3 };

/// Where log lines end. Safe to call from any thread.
class LogSink {
public:
    virtual ~LogSink() = default;

    /// One line, without a line feed, as it shall stand: a leveled line with its level word, or a
    /// trace line. Control characters in it are already escaped.
    virtual void write(LogLevel level, const QByteArray& line) = 0;

    /// Returns when all lines are written, except to a reader that takes none. None may be written
    /// any more.
    virtual void finish() {}
};

} // namespace korvale
