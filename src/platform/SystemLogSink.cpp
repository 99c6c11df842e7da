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
      m_backlog([this](LogLevel level, const QByteArray& line) { writeNow(level, line); },
                capacity) {
    if (!m_stderrIsJournal) {
        ::openlog("korvale-ui", LOG_PID, LOG_USER);
    }
}

SystemLogSink::~SystemLogSink() {
    finishWriting();
    if (!m_stderrIsJournal) {
        ::closelog();
    }
}

void SystemLogSink::finish() {
    finishWriting();
}

void SystemLogSink::finishWriting() {
    m_standardError.hurry();
    m_backlog.finish();
}

void SystemLogSink::write(LogLevel level, const QByteArray& line) {
    const std::lock_guard lock(m_mutex);
    const bool isNoTrouble = !isOneOfMany() && m_backlog.isEmpty() &&
                             StandardError::takes(static_cast<std::size_t>(line.size()));
    if (isNoTrouble) {
        writeNow(level, line);
    } else {
        m_backlog.add(level, line);
    }
}

void SystemLogSink::writeNow(LogLevel level, const QByteArray& line) {
    static constexpr std::array priorities{LOG_ERR, LOG_WARNING, LOG_INFO, LOG_DEBUG};
    if (!m_stderrIsJournal) {
        ::syslog(priorities[static_cast<std::size_t>(level)], "%s", line.constData());
    }
    m_standardError.writeLine(line);
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
