#include "platform/SystemLogSink.h"

#include <array>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace korvale {
namespace {

// So many lines within that time are written by whoever logs them.
constexpr int fewLines = 500;
constexpr std::chrono::seconds burstTime{1};

/// At the end: how long one line may keep the system's log.
constexpr std::chrono::milliseconds patience{500};

constexpr std::array priorities{LOG_ERR, LOG_WARNING, LOG_INFO, LOG_DEBUG};

int priorityOf(LogLevel level) {
    return priorities[static_cast<std::size_t>(level)];
}

void toSystemLog(LogLevel level, const QByteArray& line) {
    ::syslog(priorityOf(level), "%s", line.constData());
}

} // namespace

bool isJournalStream(const QByteArray& journalStream, int descriptor) {
    struct stat status {};
    if (journalStream.isEmpty() || ::fstat(descriptor, &status) != 0) {
        return false;
    }
    return journalStream ==
           QByteArray::number(status.st_dev) + ':' + QByteArray::number(status.st_ino);
}

SystemLogSink::SystemLogSink(std::size_t capacity)
    : m_stderrIsJournal(isJournalStream(qgetenv("JOURNAL_STREAM"), STDERR_FILENO)),
      m_forStandardError(
          [this](LogLevel level, const QByteArray& line) { toStandardError(level, line); },
          capacity),
      m_forSystemLog(toSystemLog, capacity) {
    if (!m_stderrIsJournal) {
        ::openlog("korvale-ui", LOG_PID, LOG_USER);
    }
}

SystemLogSink::~SystemLogSink() {
    finishWriting();
}

void SystemLogSink::finish() {
    finishWriting();
}

void SystemLogSink::finishWriting() {
    m_standardError.hurry();
    // closelog(3), which nothing needs, would wait for a thread that is left behind.
    m_forSystemLog.finishUnlessStuck(patience);
    m_forStandardError.finish();
}

void SystemLogSink::write(LogLevel level, const QByteArray& line) {
    const std::lock_guard lock(m_mutex);
    if (!m_stderrIsJournal) {
        m_forSystemLog.add(level, line);
    }
    const bool isNoTrouble = !isOneOfMany() && m_forStandardError.isEmpty() &&
                             StandardError::takes(static_cast<std::size_t>(line.size()));
    if (isNoTrouble) {
        toStandardError(level, line);
    } else {
        m_forStandardError.add(level, line);
    }
}

void SystemLogSink::toStandardError(LogLevel level, const QByteArray& line) {
    m_standardError.writeLine(
        m_stderrIsJournal ? '<' + QByteArray::number(priorityOf(level)) + '>' + line : line);
}

bool SystemLogSink::isOneOfMany() {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_burstStart >= burstTime) {
        m_burstStart = now;
        m_burstLines = 0;
    }
    return ++m_burstLines > fewLines;
}

} // namespace korvale
